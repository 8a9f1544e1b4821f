#pragma once

#include <string>
#include <utility>
#include <vector>

namespace zqm::live {

// A table of how far events and sounds were apart, in milliseconds; each row one run.
class DelayTable {
public:
    // What is measured, for the head of the table.
    explicit DelayTable(std::string what) : what_(std::move(what)) {}

    void add(const std::string& run, const std::vector<double>& seconds);
    // Lines of "run, number, min, median, 95th percentile, max", the last one over all runs.
    std::string text() const;

private:
    struct Row {
        std::string run;
        std::vector<double> seconds;
    };
    std::string what_;
    std::vector<Row> rows_;
};

} // namespace zqm::live
