#include "tests/live/delays.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <sstream>

namespace zqm::live {

namespace {

constexpr double kMillisecondsPerSecond = 1000;
constexpr int kNameWidth = 34;

double quantile(const std::vector<double>& sorted, double part) {
    return sorted[static_cast<std::size_t>(std::lround(part * static_cast<double>(sorted.size() - 1)))];
}

void write(std::ostream& out, const std::string& run, std::vector<double> seconds) {
    out << std::left << std::setw(kNameWidth) << run << std::right << std::setw(6) << seconds.size();
    std::ranges::sort(seconds);
    if (!seconds.empty()) {
        for (const double part : {0.0, 0.5, 0.95, 1.0}) {
            out << std::setw(9) << quantile(seconds, part) * kMillisecondsPerSecond;
        }
    }
    out << '\n';
}

} // namespace

void DelayTable::add(const std::string& run, const std::vector<double>& seconds) {
    rows_.push_back({run, seconds});
}

std::string DelayTable::text() const {
    std::ostringstream out;
    out << std::fixed << std::setprecision(1);
    out << std::left << std::setw(kNameWidth) << what_ + ", ms"
        << "number      min   median      p95      max\n";
    std::vector<double> all;
    for (const Row& row : rows_) {
        write(out, row.run, row.seconds);
        all.insert(all.end(), row.seconds.begin(), row.seconds.end());
    }
    write(out, "all", all);
    return out.str();
}

} // namespace zqm::live
