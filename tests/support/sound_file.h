#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace zqm::support {

// A sound file read whole, its channels mixed to one; samples from -1 to 1.
struct SoundFile {
    // Throws std::runtime_error when it is no sound file that libsndfile can read to its end.
    explicit SoundFile(const std::filesystem::path& path);

    std::string format; // libsndfile's name of the major format, such as "WAV (Microsoft)"
    int rate = 0;       // frames a second
    int channels = 0;
    std::vector<float> samples; // one a frame

    std::size_t frames() const { return samples.size(); }
    double seconds() const { return static_cast<double>(samples.size()) / rate; }
};

using Samples = std::vector<float>;

// Writes a WAV file of one channel and 16 bits. Throws std::runtime_error when that fails.
void writeSoundFile(const std::filesystem::path& path, std::span<const float> samples, int rate);

// What sounds between silences (samples of 0) of at least so many seconds, without silence around it.
std::vector<Samples> partsBetweenSilences(std::span<const float> samples, int rate, double seconds);

// Root mean square; 0 for no samples.
double rms(std::span<const float> samples);

// Seconds of the longest run of samples whose magnitude stays below the threshold.
double longestSilence(std::span<const float> samples, int rate, float threshold = 0.01F);

} // namespace zqm::support
