#include "tests/support/leak_search.h"

#include <regex>

namespace zqm::support {

bool tellsOfInterruptedLeakSearch(const std::string& line) {
    static const std::regex words(R"(==\d+==Unable to get registers from thread \d+\.)");
    return std::regex_match(line, words);
}

} // namespace zqm::support
