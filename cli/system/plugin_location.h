#pragma once

#include <string>

namespace zqm::host {
class Runtime;
}

namespace zqm::cli {

// Where the plugin library is: beside the program, as it is built, else where an installation has it, seen
// from the program's folder. Throws Failure when it is in neither.
std::string findPlugin();

// The same for a program in another folder.
std::string findPlugin(const std::string& programFolder);

// Loads it into the host, with the other libraries of its family that stand beside it. Throws Failure also
// where too few files can be opened for it to run.
void loadPlugin(host::Runtime& runtime);

} // namespace zqm::cli
