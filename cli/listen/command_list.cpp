#include "cli/listen/command_list.h"

#include "cli/command_line/failure.h"
#include "cli/text/text_input.h"

#include <algorithm>
#include <string_view>

namespace zqm::cli {

std::vector<std::string> readCommands(const std::string& path) {
    const std::string content = readInput(path);
    std::string_view rest = withoutByteOrderMark(content);
    std::vector<std::string> commands;
    for (std::size_t number = 1; !rest.empty(); ++number) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (validUtf8(line) != line.size()) {
            throw Failure(inputName(path) + " is not valid UTF-8 in line " + std::to_string(number));
        }
        if (line.find('\0') != std::string_view::npos) { // where a command's text ends for the host
            throw Failure(inputName(path) + " has a null character in line " + std::to_string(number));
        }
        if (const std::string_view command = trimmed(line); !command.empty()) {
            commands.emplace_back(command);
        }
    }
    return commands;
}

} // namespace zqm::cli
