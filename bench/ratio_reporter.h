// Prints, after Google Benchmark's own table, how the times of two benchmarks of a run relate.

#pragma once

#include <benchmark/benchmark.h>
#include <cstdio>
#include <limits>
#include <map>
#include <string>
#include <vector>

// Of what is no conversion of ours, and is told to compare with.
constexpr double kNoLimit = std::numeric_limits<double>::infinity();

struct Ratio {
    const char* what;
    const char* measured; // names of benchmarks
    const char* floor;
    double atMost;
};

class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const bool isMedian = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
            if (isMedian) {
                times_[run.run_name.str()] = run.GetAdjustedCPUTime();
            }
        }
    }

    // Answers whether each is small enough; one whose benchmarks didn't run counts as small enough.
    bool print(const std::vector<Ratio>& ratios) const {
        bool good = true;
        for (const Ratio& ratio : ratios) {
            const auto measured = times_.find(ratio.measured);
            const auto floor = times_.find(ratio.floor);
            if (measured == times_.end() || floor == times_.end()) {
                continue;
            }
            const double times = measured->second / floor->second;
            std::printf("%-60s %6.2f", ratio.what, times);
            if (ratio.atMost != kNoLimit) {
                std::printf(" (at most %.2f)", ratio.atMost);
            }
            std::printf("\n");
            good = good && times <= ratio.atMost;
        }
        return good;
    }

private:
    std::map<std::string, double> times_; // medians
};
