#pragma once

#include <cstddef>
#include <functional>
#include <map>

namespace zqm::host {

class Core;

// Code of the host program that runs before the nth call of some kind.
class CallHooks {
public:
    void before(std::size_t nth, std::function<void()> code) { codes_[calls_ + nth] = std::move(code); }

    // Counts a call and runs its code. What that throws leaves the host's own call around it.
    void called(Core& core);

private:
    std::size_t calls_ = 0;
    std::map<std::size_t, std::function<void()>> codes_; // by number of the call
};

} // namespace zqm::host
