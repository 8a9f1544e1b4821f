#include "cli/command_line/message.h"

#include <algorithm>
#include <cstdio>

namespace zqm::cli {

std::string oneLine(std::string_view text) {
    std::string line(text);
    std::ranges::replace_if(
        line,
        [](char character) { return static_cast<unsigned char>(character) < ' ' || character == '\x7F'; },
        '?');
    return line;
}

void tell(std::string_view text) {
    std::fprintf(stderr, "zqmspeech: %s\n", oneLine(text).c_str());
}

} // namespace zqm::cli
