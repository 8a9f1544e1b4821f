// Scripts that complete command lines of zqmspeech in a shell. They are made of what the commands declare.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zqm::cli {

struct Command;

std::string bashCompletion(const std::vector<Command>& commands);
std::string zshCompletion(const std::vector<Command>& commands);
std::string fishCompletion(const std::vector<Command>& commands);

struct Shell {
    std::string_view name;
    std::string (*completion)(const std::vector<Command>& commands);
};
const std::vector<Shell>& shells();
std::vector<std::string> shellNames();

// In single quotes, as POSIX shells want it.
std::string quoted(std::string_view text);

// The text with a backslash before each of these characters.
std::string escaped(std::string_view text, std::string_view characters);

} // namespace zqm::cli
