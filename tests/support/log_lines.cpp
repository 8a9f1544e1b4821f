#include "tests/support/log_lines.h"

#include <gtest/gtest.h>
#include <sstream>

namespace zqm::support {

std::vector<std::string> logged(const std::function<void()>& body) {
    testing::internal::CaptureStderr();
    body();
    std::istringstream log(testing::internal::GetCapturedStderr());
    std::vector<std::string> lines;
    for (std::string line; std::getline(log, line);) {
        const std::size_t end = line.find("] ");
        lines.push_back(end == std::string::npos ? line : line.substr(end + 2));
    }
    return lines;
}

} // namespace zqm::support
