// Values as the arguments of one call.

#pragma once

#include <zqmhost/zqmhost.h>

#include <deque>
#include <vector>

namespace zqm::cli {

// Where the method takes an argument by reference, it gets a slot with the value.
class PassedArguments {
public:
    PassedArguments(const host::MethodDescription& method, const std::vector<host::Value>& chosen);
    PassedArguments(const PassedArguments&) = delete;
    PassedArguments& operator=(const PassedArguments&) = delete;

    const std::vector<host::Value>& values() const { return values_; }
    // With what the call left in them.
    const std::deque<host::Value>& slots() const { return slots_; }

private:
    std::deque<host::Value> slots_; // never moved: the values point to them
    std::vector<host::Value> values_;
};

} // namespace zqm::cli
