#pragma once

#include "cli/say/speech_timing.h"

#include <iosfwd>
#include <optional>
#include <string_view>

namespace zqm::cli {

enum class SubtitleFormat { WebVtt, Srt, Lrc };

// Whether a file's name ends so, in upper or lower case; the extension is in lower case, ".vtt".
bool hasExtension(std::string_view fileName, std::string_view extension);

// By the extension of the file's name, in upper or lower case; none when it is none of .vtt, .srt and .lrc.
std::optional<SubtitleFormat> subtitleFormat(std::string_view fileName);

// The words of a speech and when they are heard, as UTF-8: sentences with the time of each word in WebVTT and
// LRC, those of more than two lines cut in WebVTT and SRT. Cues are in order, take time and don't overlap.
void writeSubtitles(const SpeechTiming& timing, SubtitleFormat format, std::ostream& output);

} // namespace zqm::cli
