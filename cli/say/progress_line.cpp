#include "cli/say/progress_line.h"

#include "cli/terminal/terminal_line.h"

#include <cmath>

namespace zqm::cli {

std::string progressText(double share, std::string_view word, std::size_t columns) {
    std::string line = std::to_string(std::lround(share * 100)) + "%  ";
    line.insert(0, line.size() < 6 ? 6 - line.size() : 0, ' ');
    return fitted(line.append(word), columns);
}

} // namespace zqm::cli
