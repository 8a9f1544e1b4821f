// What comes to standard error from now on, without any test framework around it.

#pragma once

#include <string>
#include <vector>

namespace zqm::endurance {

// One at a time. Its end puts standard error back, and copies to it what nobody has taken.
class LogFile {
public:
    LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;
    ~LogFile();

    // The lines since the last call, without the date and process that stand before what the platform logs.
    std::vector<std::string> take();

    // To what was standard error before.
    void print(const std::string& line) const;

private:
    std::string content() const;

    int file_;
    int before_;
};

} // namespace zqm::endurance
