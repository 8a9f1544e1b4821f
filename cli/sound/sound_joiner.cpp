#include "cli/sound/sound_joiner.h"

#include "cli/command_line/failure.h"
#include "cli/sound/sound_reader.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <utility>

namespace zqm::cli {
namespace {

constexpr std::size_t kCopiedAtOnce = 16384;

std::string extensionOf(const std::string& path) {
    const std::string name = path.substr(path.rfind('/') + 1);
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 ? std::string() : name.substr(dot + 1);
}

// What is sent on has no name to tell by; every program takes WAV.
std::string wantedExtension(const std::string& path, const std::optional<std::string>& format) {
    return format ? *format : path == "-" ? "wav" : extensionOf(path);
}

SoundFormat formatOf(const std::string& extension, int rate) {
    if (auto format = findSoundFormat(extension, rate)) {
        return *std::move(format);
    }
    throw Failure("the speech can't be written: no sound file format is known for the extension \"" +
                  extension + "\" (zqmspeech say --formats lists them)");
}

} // namespace

SoundJoiner::SoundJoiner(const std::string& path, const std::optional<std::string>& format)
    : format_(formatOf(wantedExtension(path, format), kUsualRate)), target_(path) {}

void SoundJoiner::append(const std::string& path) {
    SoundReader sound(path);
    begin(sound.rate());
    std::array<std::int16_t, kCopiedAtOnce> samples{};
    while (const std::size_t count = sound.read(samples)) {
        const auto part = std::span(samples).first(count);
        writer_->write(part);
        frames_ += static_cast<std::int64_t>(count);
        hasSound_ = hasSound_ || std::ranges::any_of(part, [](std::int16_t sample) { return sample != 0; });
    }
}

void SoundJoiner::begin(int rate) {
    if (!writer_) {
        rate_ = rate;
        if (rate != kUsualRate) {
            format_ = formatOf(format_.extension, rate);
        }
        writer_ = std::make_unique<SoundWriter>(target_.descriptor(), target_.fileName(), format_, rate);
    }
}

double SoundJoiner::seconds() const {
    return static_cast<double>(frames_) / rate_;
}

void SoundJoiner::finish() {
    begin(kUsualRate);
    writer_->finish();
}

SoundReader SoundJoiner::reader() const {
    return {target_.descriptor(), format_};
}

} // namespace zqm::cli
