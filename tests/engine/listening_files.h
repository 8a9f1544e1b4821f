// Recordings of people that the engine is to understand.

#pragma once

#include <filesystem>
#include <span>
#include <vector>

namespace zqm::test {

// What its speaker says; samples of the rate that is listened at, from -1 to 1, with silence around them.
inline constexpr const char* kRecordedCommand = "go forward ten meters";
std::vector<float> recordedCommand();

// The same several times over.
std::vector<float> repeated(std::span<const float> samples, int times);

struct SoundFormat {
    int format = 0; // libsndfile's
    int rate = 0;
    int channels = 1; // all hold the same

    bool operator==(const SoundFormat&) const = default;
};

// Writes samples of the rate that is listened at. Throws std::runtime_error when that fails.
void writeSoundFile(const std::filesystem::path& path, std::span<const float> samples,
                    const SoundFormat& format);

} // namespace zqm::test
