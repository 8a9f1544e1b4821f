#pragma once

#include "cli/sound/sound_formats.h"
#include "cli/sound/sound_reader.h"
#include "cli/sound/sound_target.h"
#include "cli/sound/sound_writer.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace zqm::cli {

// Joins sound files of one channel into one.
class SoundJoiner {
public:
    // Into the file of this path, "-" being standard output; in this format, or that of its extension. Throws
    // Failure, as the others.
    SoundJoiner(const std::string& path, const std::optional<std::string>& format);

    void append(const std::string& path);
    double seconds() const;                     // of what was joined so far
    bool hasSound() const { return hasSound_; } // silence is none
    void finish();                              // all is joined
    // Then it can be read, until it is put where it shall be.
    SoundReader reader() const;
    void putInPlace() { target_.putInPlace(); }

private:
    void begin(int rate);

    SoundFormat format_;
    SoundTarget target_;
    std::unique_ptr<SoundWriter> writer_;
    int rate_ = kUsualRate; // of the files
    std::int64_t frames_ = 0;
    bool hasSound_ = false;
};

} // namespace zqm::cli
