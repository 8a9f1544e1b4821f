#include "cli/listen/listening_lines.h"

#include "cli/text/json_line.h"

namespace zqm::cli {
namespace {

void add(Json& event, TimeRange range) {
    event["begin"] = rounded(range.begin);
    event["end"] = rounded(range.end);
}

} // namespace

std::string beganLine() {
    return lineOf({{"event", "began"}});
}

std::string recognizedLine(std::string_view command, std::size_t index, std::optional<TimeRange> range) {
    Json event{{"event", "recognized"}, {"command", command}, {"index", index}};
    if (range) {
        add(event, *range);
    }
    return lineOf(event);
}

std::string rejectedLine(TimeRange range) {
    Json event{{"event", "rejected"}};
    add(event, range);
    return lineOf(event);
}

std::string refusedLine(std::string_view command, std::string_view reason) {
    return lineOf({{"event", "refused"}, {"command", command}, {"reason", reason}});
}

std::string moreRefusedLine(std::size_t count) {
    return lineOf({{"event", "moreRefused"}, {"count", count}});
}

std::string failedLine(std::string_view reason) {
    return lineOf({{"event", "failed"}, {"reason", reason}});
}

std::string endedLine() {
    return lineOf({{"event", "ended"}});
}

} // namespace zqm::cli
