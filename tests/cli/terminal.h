#pragma once

#include <string>

namespace zqm::tests {

// A terminal, seen from outside: programs write to `path`, what they wrote is read here.
class Terminal {
public:
    explicit Terminal(unsigned short columns); // throws std::system_error
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal();

    void resize(unsigned short columns, unsigned short rows) const; // throws std::system_error

    int descriptor() const { return inside_; } // the programs' side
    const std::string& path() const { return path_; }
    // What was written since the last time.
    std::string written() const;

private:
    [[noreturn]] void fail() const;

    int outside_ = -1;
    int inside_ = -1;
    std::string path_;
};

} // namespace zqm::tests
