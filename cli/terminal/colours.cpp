#include "cli/terminal/colours.h"

#include <cstdlib>

#include <unistd.h>

namespace zqm::cli {

bool areColoursWanted(int descriptor) {
    const char* none = std::getenv("NO_COLOR");
    const char* kind = std::getenv("TERM");
    return isatty(descriptor) != 0 && kind != nullptr && std::string_view(kind) != "dumb" &&
           (none == nullptr || *none == '\0');
}

std::string bold(std::string_view text, bool isColoured) {
    return isColoured ? "\x1b[1m" + std::string(text) + "\x1b[0m" : std::string(text);
}

} // namespace zqm::cli
