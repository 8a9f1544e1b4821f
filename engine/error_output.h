// Standard error, which is that of the program that speaks.

#pragma once

namespace zqm::engine {

// One line of the engine's own.
void tellError(const char* words);

// From now on nothing else is written there: the libraries complain of their own data, one of them thousands
// of times over one text. In a build with sanitizers they go on, for those report there.
void silenceLibraries();

} // namespace zqm::engine
