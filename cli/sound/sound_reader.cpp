#include "cli/sound/sound_reader.h"

#include "cli/command_line/failure.h"

#include <algorithm>

#include <sndfile.h>
#include <unistd.h>

namespace zqm::cli {
namespace {

[[noreturn]] void fail() {
    throw Failure(std::string("the speech that was written can't be read: ") + sf_strerror(nullptr));
}

std::size_t counted(sf_count_t count) {
    return static_cast<std::size_t>(std::max<sf_count_t>(count, 0));
}

} // namespace

SoundReader::SoundReader(const std::string& path) : sound_(nullptr, &sf_close) {
    SF_INFO info{};
    sound_.reset(sf_open(path.c_str(), SFM_READ, &info));
    if (!sound_ || info.channels != 1) {
        fail();
    }
    rate_ = info.samplerate;
    frames_ = info.frames;
}

SoundReader::SoundReader(int descriptor, const SoundFormat& format) : sound_(nullptr, &sf_close) {
    SF_INFO info{};
    if ((format.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_RAW) { // it has nothing but samples
        info.samplerate = format.rate;
        info.channels = 1;
        info.format = format.format;
    }
    lseek(descriptor, 0, SEEK_SET);
    sound_.reset(sf_open_fd(descriptor, SFM_READ, &info, SF_FALSE));
    if (!sound_) {
        fail();
    }
    rate_ = info.samplerate;
    frames_ = info.frames;
}

std::size_t SoundReader::read(std::span<std::int16_t> samples) {
    return counted(sf_readf_short(sound_.get(), samples.data(), static_cast<sf_count_t>(samples.size())));
}

std::size_t SoundReader::read(std::span<float> samples) {
    return counted(sf_readf_float(sound_.get(), samples.data(), static_cast<sf_count_t>(samples.size())));
}

} // namespace zqm::cli
