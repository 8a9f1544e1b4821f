#include "cli/text/json_line.h"

#include <cmath>

namespace zqm::cli {

std::string lineOf(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

double rounded(double seconds) {
    return std::round(seconds * 1000) / 1000;
}

} // namespace zqm::cli
