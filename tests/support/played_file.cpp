#include "tests/support/played_file.h"

#include "tests/support/sound_file.h"
#include "tests/support/sounded_parts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>

namespace zqm::support {

namespace {

std::string bytesOf(std::span<const float> samples) {
    std::string bytes;
    bytes.reserve(samples.size() * sizeof(std::int16_t));
    for (const float sample : samples) {
        const long level = std::clamp(std::lround(sample * 32768.0F), -32768L, 32767L);
        const auto bits = static_cast<std::uint16_t>(static_cast<std::int16_t>(level));
        bytes += static_cast<char>(bits & 0xFF);
        bytes += static_cast<char>(bits >> 8);
    }
    return bytes;
}

} // namespace

PlayedFile::PlayedFile(const PulseServer& server, const std::filesystem::path& file) {
    const SoundFile sound(file);
    const std::span<const float> samples(sound.samples);
    const auto parts = soundedParts(samples, samples.size() + 1);
    const std::size_t end = parts.empty() ? samples.size() : parts.front().end;
    player_ = std::make_unique<Process>(
        "pacat",
        std::vector<std::string>{"--playback", "--raw", "--format=s16le", "--channels=1",
                                 "--rate=" + std::to_string(sound.rate)},
        ProcessOptions{.input = bytesOf(samples.first(end)), .environment = server.environment()});
}

bool PlayedFile::isOver() const {
    if (player_->running()) {
        return false;
    }
    const ProcessResult result = player_->result();
    if (!result.succeeded()) {
        throw std::runtime_error("a file couldn't be played: " + result.errors);
    }
    return true;
}

} // namespace zqm::support
