#include "cli/say/speech_record.h"

#include "cli/command_line/failure.h"
#include "cli/timeline/timeline.h"

#include <cerrno>
#include <cstring>
#include <span>
#include <sstream>
#include <string_view>
#include <vector>

#include <unistd.h>

namespace zqm::cli {
namespace {

void put(SoundTarget& target, std::string_view content) {
    while (!content.empty()) {
        const ssize_t count = ::write(target.descriptor(), content.data(), content.size());
        if (count >= 0) {
            content.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            throw Failure("can't write " + target.fileName() + ": " + std::strerror(errno));
        }
    }
    target.putInPlace();
}

} // namespace

SpeechRecord::SpeechRecord(const SayOptions& options, const std::u16string& text,
                           const std::string& language) {
    if (options.subtitles) {
        subtitles_.emplace(*options.subtitles);
        format_ = subtitleFormat(*options.subtitles).value_or(format_);
    }
    if (options.timeline) {
        timeline_.emplace(*options.timeline);
    }
    if (subtitles_ || timeline_) {
        timing_.emplace(text, language);
    }
}

void SpeechRecord::take(const SpeakingEvent& event) {
    if (timing_) {
        timing_->add(event);
        hasTimes_ = hasTimes_ && event.time;
    }
}

void SpeechRecord::takeSound(SoundReader sound) {
    constexpr std::size_t kAtOnce = 65536;
    std::vector<float> samples(kAtOnce);
    sound_.emplace(sound.rate());
    for (std::size_t count = sound.read(samples); count > 0; count = sound.read(samples)) {
        sound_->add(std::span(samples).first(count));
    }
}

void SpeechRecord::write(double seconds) {
    if (!timing_) {
        return;
    }
    if (!hasTimes_) {
        throw Failure("this system does not tell when words are heard, as subtitles and timelines need");
    }
    const SpeechTiming& timing = timing_->finish(seconds);
    if (subtitles_) {
        std::ostringstream content;
        writeSubtitles(timing, format_, content);
        put(*subtitles_, content.view());
    }
    if (timeline_ && sound_) {
        put(*timeline_, timelineSvg(timing, *sound_));
    }
}

} // namespace zqm::cli
