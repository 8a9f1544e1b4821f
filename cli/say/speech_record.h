#pragma once

#include "cli/say/say_options.h"
#include "cli/say/say_timing.h"
#include "cli/sound/sound_reader.h"
#include "cli/sound/sound_target.h"
#include "cli/subtitles/subtitles.h"
#include "cli/timeline/waveform.h"

#include <optional>
#include <string>

namespace zqm::cli {

// The files beside the sound of a speech that tell what is heard when: subtitles and a timeline, as far as
// the options name them. They are there when all is written, not before.
class SpeechRecord {
public:
    // Throws Failure when they can't be written, as the others.
    SpeechRecord(const SayOptions& options, const std::u16string& text, const std::string& language);

    void take(const SpeakingEvent& event);
    bool needsSound() const { return timeline_.has_value(); }
    void takeSound(SoundReader sound); // all of it
    // The speech took so many seconds.
    void write(double seconds);

private:
    std::optional<SayTiming> timing_;
    std::optional<SoundTarget> subtitles_;
    SubtitleFormat format_ = SubtitleFormat::WebVtt;
    std::optional<SoundTarget> timeline_;
    std::optional<Waveform> sound_;
    bool hasTimes_ = true;
};

} // namespace zqm::cli
