// The events of listening as `zqmspeech listen --json` prints them: JSON objects without line feeds.
// docs/listen.schema.json describes them.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zqm::cli {

// Of a phrase, in seconds of sound.
struct TimeRange {
    double begin = 0;
    double end = 0;
};

std::string beganLine();
std::string recognizedLine(std::string_view command, std::size_t index, std::optional<TimeRange> range);
std::string rejectedLine(TimeRange range);
std::string refusedLine(std::string_view command, std::string_view reason);
std::string moreRefusedLine(std::size_t count);
std::string failedLine(std::string_view reason);
std::string endedLine();

} // namespace zqm::cli
