#pragma once

#include <filesystem>

namespace zqm::cli {

// Where the plugin library is: beside the program, else in the folder for installed libraries. Throws
// Failure when it is in neither.
std::filesystem::path findPlugin();

// The same for a program in another folder.
std::filesystem::path findPlugin(const std::filesystem::path& programFolder);

} // namespace zqm::cli
