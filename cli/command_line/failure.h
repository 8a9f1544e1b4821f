#pragma once

#include <stdexcept>

namespace zqm::cli {

// What the command can't do, in one line for people. It ends with exit code 1.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A command line that makes no sense. It ends with exit code 2.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace zqm::cli
