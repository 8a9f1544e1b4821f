#pragma once

namespace zqm::cli {

// Makes standard input, output and error that are closed fail for whoever uses them, as they should, but be
// taken: else the next thing that is opened would become standard output, say, and be written to.
void occupyStandardDescriptors();

} // namespace zqm::cli
