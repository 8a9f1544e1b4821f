#pragma once

#include <string>

namespace zqm::tests {

// Empty when each of the lines is JSON as this schema says, in the judgement of a validator that is not ours;
// otherwise what is wrong.
std::string schemaErrors(const std::string& lines, const std::string& schema);

} // namespace zqm::tests
