#include "cli/sound/sound_writer.h"

#include "cli/command_line/failure.h"
#include "cli/sound/sound_reader.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include <samplerate.h>
#include <sndfile.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zqm::cli {
namespace {

constexpr std::size_t kConvertedAtOnce = 4096;

} // namespace

// libsndfile writes through these functions so that the reason of a failure is errno's.
struct SoundWriter::File {
    File(int file, std::string fileName) : descriptor(file), name(std::move(fileName)) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { close(); }

    void open(SF_INFO& info) {
        SF_VIRTUAL_IO functions{length, seek, read, write, tell};
        sound = sf_open_virtual(&functions, SFM_WRITE, &info, this);
        if (sound == nullptr) {
            fail(sf_strerror(nullptr));
        }
    }
    int close() {
        SNDFILE* const open = std::exchange(sound, nullptr);
        return open == nullptr ? 0 : sf_close(open);
    }
    [[noreturn]] void fail(const char* reason) const {
        throw Failure("the speech can't be written: " + name + ": " +
                      (error == 0 ? reason : std::strerror(error)));
    }

    static File& of(void* self) { return *static_cast<File*>(self); }
    static sf_count_t length(void* self) {
        struct stat status {};
        return fstat(of(self).descriptor, &status) == 0 ? status.st_size : -1;
    }
    static sf_count_t seek(sf_count_t offset, int whence, void* self) {
        return lseek(of(self).descriptor, offset, whence);
    }
    static sf_count_t tell(void* self) { return lseek(of(self).descriptor, 0, SEEK_CUR); }
    static sf_count_t read(void*, sf_count_t, void*) { return 0; }
    static sf_count_t write(const void* from, sf_count_t count, void* self) {
        sf_count_t done = 0;
        while (done < count) {
            const ssize_t taken = ::write(of(self).descriptor, static_cast<const char*>(from) + done,
                                          static_cast<std::size_t>(count - done));
            if (taken < 0 && errno != EINTR) {
                of(self).error = errno;
                break;
            }
            done += taken > 0 ? taken : 0;
        }
        return done;
    }

    int descriptor;
    std::string name;
    int error = 0; // errno of a write that failed
    SNDFILE* sound = nullptr;
};

struct SoundWriter::Resampler {
    Resampler(int from, int to) : ratio(static_cast<double>(to) / from), state(nullptr, &src_delete) {
        int error = 0;
        state.reset(src_new(SRC_SINC_MEDIUM_QUALITY, 1, &error));
        if (!state) {
            throw Failure(std::string("the rate of the sound can't be changed: ") + src_strerror(error));
        }
    }

    // Hands what comes out to the function.
    template <typename Function>
    void convert(std::span<const std::int16_t> samples, bool isLast, Function function) {
        std::vector<float> input(samples.size() + 1); // never without an address
        src_short_to_float_array(samples.data(), input.data(), static_cast<int>(samples.size()));
        std::array<float, kConvertedAtOnce> output{};
        std::array<std::int16_t, kConvertedAtOnce> converted{};
        SRC_DATA data{};
        data.data_in = input.data();
        data.input_frames = static_cast<long>(samples.size());
        data.data_out = output.data();
        data.output_frames = static_cast<long>(output.size());
        data.src_ratio = ratio;
        data.end_of_input = isLast ? 1 : 0;
        do {
            if (const int error = src_process(state.get(), &data); error != 0) {
                throw Failure(std::string("the rate of the sound can't be changed: ") + src_strerror(error));
            }
            data.data_in += data.input_frames_used;
            data.input_frames -= data.input_frames_used;
            src_float_to_short_array(output.data(), converted.data(),
                                     static_cast<int>(data.output_frames_gen));
            function(std::span(converted).first(static_cast<std::size_t>(data.output_frames_gen)));
        } while (data.input_frames > 0 || data.output_frames_gen == data.output_frames);
    }

    double ratio;
    std::unique_ptr<SRC_STATE, SRC_STATE* (*)(SRC_STATE*)> state;
};

SoundWriter::SoundWriter(int descriptor, std::string name, SoundFormat format, int rate)
    : format_(std::move(format)), file_(std::make_unique<File>(descriptor, std::move(name))) {
    if (rate != format_.rate) {
        resampler_ = std::make_unique<Resampler>(rate, format_.rate);
    }
    SF_INFO info{};
    info.samplerate = format_.rate;
    info.channels = 1;
    info.format = format_.format;
    file_->open(info);
}

SoundWriter::~SoundWriter() = default;

void SoundWriter::write(std::span<const std::int16_t> samples) {
    if (resampler_) {
        resampler_->convert(samples, false, [this](std::span<const std::int16_t> part) { put(part); });
    } else {
        put(samples);
    }
}

void SoundWriter::put(std::span<const std::int16_t> samples) {
    const auto count = static_cast<sf_count_t>(samples.size());
    if (count > 0 && (sf_write_short(file_->sound, samples.data(), count) != count || file_->error != 0)) {
        file_->fail(sf_strerror(file_->sound));
    }
    written_ += count;
}

void SoundWriter::finish() {
    if (resampler_) {
        resampler_->convert({}, true, [this](std::span<const std::int16_t> part) { put(part); });
    }
    if (written_ == 0) { // not every format can be read without any
        constexpr std::array<std::int16_t, 1> kSilence{};
        put(kSilence);
    }
    if (const int error = file_->close(); error != 0 || file_->error != 0) {
        file_->fail(sf_error_number(error));
    }
    if (SoundReader(file_->descriptor, format_).frames() < written_) {
        throw Failure("the speech is longer than a file of this format can be (flac and ogg have no limit)");
    }
}

} // namespace zqm::cli
