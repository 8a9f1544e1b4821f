#include "tests/support/sound_file.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <stdexcept>

#include <sndfile.h>

namespace zqm::support {

SoundFile::SoundFile(const std::filesystem::path& path) {
    SF_INFO info{};
    const std::unique_ptr<SNDFILE, decltype(&sf_close)> file(sf_open(path.c_str(), SFM_READ, &info),
                                                             &sf_close);
    if (!file) {
        throw std::runtime_error(path.string() + ": " + sf_strerror(nullptr));
    }
    SF_FORMAT_INFO formatInfo{};
    formatInfo.format = info.format & SF_FORMAT_TYPEMASK;
    if (sf_command(nullptr, SFC_GET_FORMAT_INFO, &formatInfo, sizeof formatInfo) == 0) {
        format = formatInfo.name;
    }
    rate = info.samplerate;
    channels = info.channels;
    const auto width = static_cast<std::size_t>(channels);
    std::vector<float> interleaved(static_cast<std::size_t>(info.frames) * width);
    if (sf_readf_float(file.get(), interleaved.data(), info.frames) != info.frames) {
        throw std::runtime_error(path.string() + ": ends before its header says");
    }
    samples.resize(interleaved.size() / width);
    for (std::size_t frame = 0; frame < samples.size(); ++frame) {
        float sum = 0;
        for (std::size_t channel = 0; channel < width; ++channel) {
            sum += interleaved[frame * width + channel];
        }
        samples[frame] = sum / static_cast<float>(channels);
    }
}

void writeSoundFile(const std::filesystem::path& path, std::span<const float> samples, int rate) {
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = 1;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    const std::unique_ptr<SNDFILE, decltype(&sf_close)> file(sf_open(path.c_str(), SFM_WRITE, &info),
                                                             &sf_close);
    const auto frames = static_cast<sf_count_t>(samples.size());
    if (!file || sf_writef_float(file.get(), samples.data(), frames) != frames) {
        throw std::runtime_error(path.string() + ": " + sf_strerror(file.get()));
    }
}

std::vector<Samples> partsBetweenSilences(std::span<const float> samples, int rate, double seconds) {
    const auto longest = static_cast<std::ptrdiff_t>(seconds * rate);
    const auto isSound = [](float sample) { return sample != 0; };
    std::vector<Samples> parts;
    auto end = samples.begin(); // of the sound so far
    for (auto at = std::find_if(end, samples.end(), isSound); at != samples.end();
         at = std::find_if(end, samples.end(), isSound)) {
        if (parts.empty() || at - end >= longest) {
            parts.emplace_back();
        } else {
            parts.back().insert(parts.back().end(), end, at);
        }
        end = std::find(at, samples.end(), 0.0F);
        parts.back().insert(parts.back().end(), at, end);
    }
    return parts;
}

double rms(std::span<const float> samples) {
    if (samples.empty()) {
        return 0;
    }
    double sum = 0;
    for (const float sample : samples) {
        sum += static_cast<double>(sample) * sample;
    }
    return std::sqrt(sum / static_cast<double>(samples.size()));
}

double longestSilence(std::span<const float> samples, int rate, float threshold) {
    std::size_t longest = 0;
    std::size_t current = 0;
    for (const float sample : samples) {
        current = std::abs(sample) < threshold ? current + 1 : 0;
        longest = std::max(longest, current);
    }
    return static_cast<double>(longest) / rate;
}

} // namespace zqm::support
