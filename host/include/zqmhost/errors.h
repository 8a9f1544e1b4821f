// What the host's C++ API throws. Nothing here ever crosses into a plugin.

#pragma once

#include "zqmhost/object.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace zqm::host {

// Base of all of them; what() is one line for people.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A plugin that can't be loaded: no such file, no entry function, nothing registered.
class LoadError : public Error {
public:
    using Error::Error;
};

// A call that can't be made: unknown class, member or event, arguments that fit no overload, a value of
// another kind than asked for, an object that is nil or gone.
class CallError : public Error {
public:
    using Error::Error;
};

// One exception object that a plugin raised, read out.
struct RaisedException {
    std::string className;
    std::string message; // "Message"; empty when it has none
    std::int64_t errorNumber = 0;
    Object object; // the exception itself
};

// What host code sees of a plugin function that raised: thrown after the function has returned, its result
// dropped.
class HostException : public Error {
public:
    explicit HostException(std::vector<RaisedException> raised); // never empty

    // Of the first exception that was raised, which is the one thrown.
    const std::string& className() const { return raised_.front().className; }
    const std::string& message() const { return raised_.front().message; }
    std::int64_t errorNumber() const { return raised_.front().errorNumber; }
    const Object& object() const { return raised_.front().object; }

    // All that the call raised, in order.
    const std::vector<RaisedException>& all() const { return raised_; }

private:
    std::vector<RaisedException> raised_;
};

} // namespace zqm::host
