#pragma once

#include "zqmhost/report.h"

#include <mutex>
#include <string>
#include <vector>

namespace zqm::host {

// May be added to on any thread: one breach is to call on a wrong one.
class Reports {
public:
    void add(Report::Kind kind, std::string text) {
        const std::lock_guard lock(mutex_);
        reports_.push_back({kind, std::move(text)});
    }
    std::vector<Report> all() const {
        const std::lock_guard lock(mutex_);
        return reports_;
    }
    void clear() {
        const std::lock_guard lock(mutex_);
        reports_.clear();
    }

private:
    mutable std::mutex mutex_;
    std::vector<Report> reports_;
};

} // namespace zqm::host
