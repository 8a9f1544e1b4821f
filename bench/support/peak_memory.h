// How far the memory of a process grows during a piece of work.

#pragma once

#include <fstream>
#include <stdexcept>
#include <string>
#include <sys/types.h>

namespace zqm::bench {

// Throws std::runtime_error where the system doesn't tell.
class PeakMemory {
public:
    explicit PeakMemory(pid_t process) : folder_("/proc/" + std::to_string(process)) {
        // 5: the peak begins anew, at what is resident now (proc(5)).
        std::ofstream reset(folder_ + "/clear_refs");
        if (!(reset << "5" << std::flush)) {
            throw std::runtime_error("the peak of a process's memory can't be reset");
        }
        before_ = bytes("VmRSS");
    }

    // Since then, at most.
    [[nodiscard]] double growth() const { return bytes("VmHWM") - before_; }

private:
    [[nodiscard]] double bytes(const std::string& what) const {
        constexpr double kKibibyte = 1024;
        std::ifstream status(folder_ + "/status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with(what + ":")) {
                return std::stod(line.substr(what.size() + 1)) * kKibibyte;
            }
        }
        throw std::runtime_error("the system doesn't tell what memory a process has");
    }

    std::string folder_;
    double before_ = 0;
};

} // namespace zqm::bench
