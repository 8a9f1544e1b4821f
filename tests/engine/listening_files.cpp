#include "tests/engine/listening_files.h"

#include "engine/listening/listening_rate.h"

#include <cstdint>
#include <fstream>
#include <iterator>
#include <memory>
#include <samplerate.h>
#include <sndfile.h>
#include <stdexcept>
#include <string>

namespace zqm::test {

using engine::kListeningRate;

std::vector<float> recordedCommand() {
    std::ifstream file("/usr/share/pocketsphinx/test/data/goforward.raw", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (bytes.empty()) {
        throw std::runtime_error("the recording can't be read: install pocketsphinx-testdata");
    }
    std::vector<float> samples(kListeningRate);
    for (std::size_t index = 0; index + 1 < bytes.size(); index += 2) {
        const auto bits = static_cast<std::uint16_t>(static_cast<unsigned char>(bytes[index]) |
                                                     static_cast<unsigned char>(bytes[index + 1]) << 8);
        samples.push_back(static_cast<float>(static_cast<std::int16_t>(bits)) / 32768);
    }
    samples.resize(samples.size() + kListeningRate);
    return samples;
}

std::vector<float> repeated(std::span<const float> samples, int times) {
    std::vector<float> all;
    for (int count = 0; count < times; ++count) {
        all.insert(all.end(), samples.begin(), samples.end());
    }
    return all;
}

namespace {

void writeFrames(const std::filesystem::path& path, std::span<const float> samples,
                 const SoundFormat& format) {
    SF_INFO info{};
    info.samplerate = format.rate;
    info.channels = format.channels;
    info.format = format.format;
    const std::unique_ptr<SNDFILE, decltype(&sf_close)> file(sf_open(path.c_str(), SFM_WRITE, &info),
                                                             &sf_close);
    if (!file) {
        throw std::runtime_error(path.string() + ": " + sf_strerror(nullptr));
    }
    std::vector<float> interleaved;
    for (const float sample : samples) {
        interleaved.insert(interleaved.end(), static_cast<std::size_t>(format.channels), sample);
    }
    const auto frames = static_cast<sf_count_t>(samples.size());
    // In portions: libsndfile's Vorbis encoder takes no more at once.
    constexpr sf_count_t kPortion = 4096;
    for (sf_count_t done = 0; done < frames; done += kPortion) {
        const sf_count_t count = std::min(kPortion, frames - done);
        if (sf_writef_float(file.get(), interleaved.data() + done * format.channels, count) != count) {
            throw std::runtime_error(path.string() + ": " + sf_strerror(file.get()));
        }
    }
}

} // namespace

void writeSoundFile(const std::filesystem::path& path, std::span<const float> samples,
                    const SoundFormat& format) {
    if (format.rate == kListeningRate) {
        writeFrames(path, samples, format);
        return;
    }
    const double ratio = static_cast<double>(format.rate) / kListeningRate;
    std::vector<float> converted(static_cast<std::size_t>(static_cast<double>(samples.size()) * ratio) + 1);
    SRC_DATA data{};
    data.data_in = samples.data();
    data.input_frames = static_cast<long>(samples.size());
    data.data_out = converted.data();
    data.output_frames = static_cast<long>(converted.size());
    data.src_ratio = ratio;
    if (!samples.empty() && src_simple(&data, SRC_SINC_BEST_QUALITY, 1) != 0) {
        throw std::runtime_error("the samples can't be resampled");
    }
    converted.resize(static_cast<std::size_t>(data.output_frames_gen));
    writeFrames(path, converted, format);
}

} // namespace zqm::test
