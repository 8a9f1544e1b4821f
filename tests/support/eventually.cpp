#include "tests/support/eventually.h"

#include <chrono>
#include <thread>

namespace zqm::support {

bool eventually(const std::function<bool()>& holds) {
    constexpr std::chrono::minutes kPatience{2};
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

} // namespace zqm::support
