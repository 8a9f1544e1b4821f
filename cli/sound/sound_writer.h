#pragma once

#include "cli/sound/sound_formats.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace zqm::cli {

// Writes samples of one channel into a sound file.
class SoundWriter {
public:
    // Into the empty file of this descriptor, which is called `name`. The samples that come are `rate` a
    // second. Throws Failure, as the others.
    SoundWriter(int descriptor, std::string name, SoundFormat format, int rate);
    SoundWriter(const SoundWriter&) = delete;
    SoundWriter& operator=(const SoundWriter&) = delete;
    ~SoundWriter();

    void write(std::span<const std::int16_t> samples);
    // The file is whole; it is read again to be sure of that. Of a sound without samples there is one.
    void finish();

private:
    struct File;
    struct Resampler;

    void put(std::span<const std::int16_t> samples);

    SoundFormat format_;
    std::unique_ptr<File> file_;
    std::unique_ptr<Resampler> resampler_; // none: the rate is that of the format
    std::int64_t written_ = 0;
};

} // namespace zqm::cli
