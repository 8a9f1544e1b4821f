#include "cli/text/wrapped_text.h"

#include "cli/text/display_width.h"

#include <algorithm>

namespace zqm::cli {
namespace {

std::string wrappedLine(std::string_view text, std::size_t columns, std::size_t indent) {
    const std::size_t blanks = std::min(text.find_first_not_of(' '), text.size());
    indent += blanks;
    text.remove_prefix(blanks);
    std::string lines;
    std::string line;
    const auto end = [&] {
        line.erase(line.find_last_not_of(' ') + 1);
        lines.append(line.empty() ? 0 : indent, ' ').append(line).append("\n");
        line.clear();
    };
    while (!text.empty()) {
        const std::size_t length = std::min(text.find(' '), text.size());
        const std::string_view word = text.substr(0, length);
        text.remove_prefix(std::min(length + 1, text.size()));
        if (!line.empty() && indent + columnsOf(line) + 1 + columnsOf(word) > columns) {
            end();
        }
        line.append(line.empty() ? "" : " ").append(word);
    }
    end();
    return lines;
}

} // namespace

std::string wrapped(std::string_view text, std::size_t columns, std::size_t indent) {
    std::string lines;
    for (;;) {
        const std::size_t end = text.find('\n');
        lines += wrappedLine(text.substr(0, end), columns, indent);
        if (end == std::string_view::npos) {
            return lines;
        }
        text.remove_prefix(end + 1);
    }
}

} // namespace zqm::cli
