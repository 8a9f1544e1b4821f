#include "engine/output/file_output.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sndfile.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace zqm::engine {

namespace {

constexpr std::size_t kSamplesAtOnce = 65536;

std::string errorText(int number) {
    return std::generic_category().message(number);
}

} // namespace

// libsndfile writes through these functions, so that the reason of a failure is errno's, and so that what a
// pipe or device doesn't take at once can be kept: waiting for a reader here, the engine would be deaf.
struct FileOutput::Writer {
    explicit Writer(int descriptor) : descriptor_(descriptor) {}
    ~Writer() { static_cast<void>(close()); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    bool open(const FileFormat& format, int sampleRate) {
        SF_INFO info{};
        info.samplerate = sampleRate;
        info.channels = 1;
        info.format = format.format;
        SF_VIRTUAL_IO functions{length, seek, read, write, tell};
        sound_ = sf_open_virtual(&functions, SFM_WRITE, &info, this);
        if (sound_ == nullptr) {
            if (error_.empty()) {
                error_ = sf_strerror(nullptr);
            }
            return false;
        }
        return error_.empty();
    }

    bool write(std::span<const std::int16_t> samples) {
        const auto count = static_cast<sf_count_t>(samples.size());
        if (sf_write_short(sound_, samples.data(), count) != count && error_.empty()) {
            error_ = sf_strerror(sound_);
        }
        return error_.empty();
    }

    // Writes what is held back, and the header anew.
    bool close() {
        if (SNDFILE* const sound = std::exchange(sound_, nullptr); sound != nullptr) {
            const int result = sf_close(sound);
            if (result != 0 && error_.empty()) {
                error_ = sf_error_number(result);
            }
        }
        return error_.empty();
    }

    // What was written and not taken yet.
    [[nodiscard]] bool hasBacklog() const { return !backlog_.empty(); }

    // Writes of that what is taken now.
    bool flush() {
        const std::size_t count = put(backlog_);
        backlog_.erase(0, count);
        return error_.empty();
    }

    [[nodiscard]] const std::string& error() const { return error_; }

private:
    static sf_count_t length(void* context) {
        struct stat status {};
        return ::fstat(static_cast<Writer*>(context)->descriptor_, &status) == 0 ? status.st_size : -1;
    }

    static sf_count_t seek(sf_count_t offset, int whence, void* context) {
        auto& writer = *static_cast<Writer*>(context);
        const off_t place = writer.move(offset, whence);
        if (place >= 0) {
            return place;
        }
        if (errno == ESPIPE && offset == (whence == SEEK_SET ? writer.place_ : 0)) {
            return writer.place_; // a pipe is where it is
        }
        writer.failed();
        return -1;
    }

    static sf_count_t read(void*, sf_count_t, void*) { return 0; }

    static sf_count_t write(const void* bytes, sf_count_t count, void* context) {
        auto& writer = *static_cast<Writer*>(context);
        const std::string_view wanted(static_cast<const char*>(bytes), static_cast<std::size_t>(count));
        const std::size_t taken = writer.hasBacklog() ? 0 : writer.put(wanted);
        if (!writer.error_.empty()) {
            return static_cast<sf_count_t>(taken);
        }
        writer.backlog_ += wanted.substr(taken);
        writer.place_ += count;
        return count;
    }

    static sf_count_t tell(void* context) {
        auto& writer = *static_cast<Writer*>(context);
        const off_t place = writer.move(0, SEEK_CUR);
        return place < 0 ? writer.place_ : place;
    }

    // As lseek; what has a backlog is where it is, as a pipe.
    [[nodiscard]] off_t move(off_t offset, int whence) const {
        if (hasBacklog()) {
            errno = ESPIPE;
            return -1;
        }
        return ::lseek(descriptor_, offset, whence);
    }

    // How much of the bytes was taken; less than all also when writing failed.
    std::size_t put(std::string_view bytes) {
        std::size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t written = ::write(descriptor_, bytes.data() + done, bytes.size() - done);
            if (written > 0) {
                done += static_cast<std::size_t>(written);
            } else if (written == 0 || errno != EINTR) {
                if (written == 0 || errno != EAGAIN) {
                    failed();
                }
                break;
            }
        }
        return done;
    }

    void failed() {
        if (error_.empty()) {
            error_ = errorText(errno);
        }
    }

    int descriptor_;
    sf_count_t place_ = 0; // of a pipe, which knows none
    std::string backlog_;
    SNDFILE* sound_ = nullptr;
    std::string error_;
};

FileOutput::FileOutput(EventLoop& loop, const FilePlacer& placer, protocol::Output target,
                       protocol::Descriptor file, protocol::Descriptor folder, int sampleRate)
    : loop_(loop), placer_(placer), target_(std::move(target)), file_(std::move(file)),
      folder_(std::move(folder)), format_(findFileFormat(target_.extension)) {
    if (format_ == nullptr) {
        fail("no sound file format is known for the extension \"" + target_.extension +
             "\" (known: " + knownExtensions() + ")");
        return;
    }
    // A pipe or device shall not hold up the engine; for a file this means nothing.
    ::fcntl(file_.get(), F_SETFL, ::fcntl(file_.get(), F_GETFL) | O_NONBLOCK);
    writer_ = std::make_unique<Writer>(file_.get());
    if (!writer_->open(*format_, sampleRate)) {
        fail(writer_->error());
        return;
    }
    become(State::Open);
}

FileOutput::~FileOutput() {
    waitForRoom(false);
    if (state() != State::Ended) {
        removeTemporary();
    }
}

void FileOutput::update() {
    if (state() == State::Open) {
        settle();
    }
}

// Hands over what is held back, and ends when it was the last.
void FileOutput::settle() {
    if (!writer_->flush()) {
        fail(writer_->error());
        return;
    }
    waitForRoom(writer_->hasBacklog());
    if (isFinishing_ && !writer_->hasBacklog()) {
        putInPlace();
    }
}

// Closing a file may bring the error that writing didn't: of the two descriptors the first is asked.
void FileOutput::putInPlace() {
    const int written = file_.release();
    file_.reset(::fcntl(written, F_DUPFD_CLOEXEC, 0));
    const int kept = file_ ? 0 : errno;
    const int closed = ::close(written) == 0 ? 0 : errno;
    const int error = closed != 0 ? closed : target_.temporaryName.empty() ? 0 : kept;
    if (error != 0) {
        fail(errorText(error));
        return;
    }
    if (!target_.temporaryName.empty()) {
        const int refusal =
            placer_.place(file_.get(), folder_.get(), target_.temporaryName, target_.finalName);
        if (refusal != 0) {
            fail(errorText(refusal));
            return;
        }
    }
    file_.reset();
    become(State::Ended);
}

void FileOutput::waitForRoom(bool needed) {
    if (needed && !isWaiting_) {
        loop_.wakeWhenWritable(file_.get());
    } else if (!needed && isWaiting_) {
        loop_.unwatch(file_.get());
    }
    isWaiting_ = needed;
}

std::size_t FileOutput::room() const {
    return state() == State::Open && !isFinishing_ && !writer_->hasBacklog() ? kSamplesAtOnce : 0;
}

void FileOutput::write(std::span<const std::int16_t> samples) {
    if (state() != State::Open) {
        return;
    }
    if (samples.size() > format_->mostSamples - written_) {
        fail("the speech is longer than a file of this format can be (flac and ogg have no limit)");
        return;
    }
    if (!writer_->write(samples)) {
        fail(writer_->error());
        return;
    }
    written_ += samples.size();
    waitForRoom(writer_->hasBacklog());
}

void FileOutput::finish() {
    if (state() != State::Open || isFinishing_) {
        return;
    }
    if (written_ == 0 && !format_->mayBeEmpty) {
        constexpr std::array<std::int16_t, 1> kSilence{};
        write(kSilence);
    }
    if (state() == State::Failed) {
        return;
    }
    if (!writer_->close()) {
        fail(writer_->error());
        return;
    }
    isFinishing_ = true;
    settle();
}

void FileOutput::stop() {
    finish();
    if (state() == State::Open) {
        waitForRoom(false);
        become(State::Ended);
    }
}

void FileOutput::fail(std::string error) {
    failWith(std::move(error));
    removeTemporary();
}

void FileOutput::removeTemporary() {
    struct stat status {};
    const bool hasName =
        !target_.temporaryName.empty() && ::fstat(file_.get(), &status) == 0 && status.st_nlink > 0;
    if (hasName && folder_) {
        static_cast<void>(placer_.remove(file_.get(), folder_.get(), target_.temporaryName));
        folder_.reset();
    }
}

} // namespace zqm::engine
