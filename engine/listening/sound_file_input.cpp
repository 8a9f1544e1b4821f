#include "engine/listening/sound_file_input.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace zqm::engine {

namespace {

constexpr std::chrono::microseconds kForever{-1};
constexpr std::chrono::microseconds kAtOnce{0};

constexpr std::size_t kGatheredAtOnce = std::size_t{1} << 18;
// More than nine hours, at the rate that is listened at. It stays in memory.
constexpr std::size_t kMostGathered = std::size_t{1} << 30;

[[noreturn]] void fail(int error) {
    throw std::runtime_error(std::generic_category().message(error));
}

} // namespace

SoundFileInput::SoundFileInput(EventLoop& loop, protocol::Descriptor file, AudioTaker& taker)
    : loop_(loop), taker_(taker), file_(std::move(file)) {}

SoundFileInput::~SoundFileInput() {
    stopGathering();
}

std::chrono::microseconds SoundFileInput::idleTime() const {
    return stage_ == Stage::New || stage_ == Stage::Reading ? kAtOnce : kForever;
}

void SoundFileInput::advance() {
    try {
        switch (stage_) {
        case Stage::New:
            begin();
            break;
        case Stage::Gathering:
            gather();
            break;
        case Stage::Reading:
            read();
            break;
        case Stage::Over:
            break;
        }
    } catch (const std::runtime_error& error) {
        close();
        taker_.failed(std::string("the sound file can't be read: ") + error.what(), Remedy::Time);
    }
}

void SoundFileInput::begin() {
    struct stat status {};
    if (::fstat(file_.get(), &status) != 0) {
        fail(errno);
    }
    if (S_ISREG(status.st_mode)) {
        open();
    } else if (S_ISFIFO(status.st_mode)) {
        pipe_ = std::exchange(file_, protocol::Descriptor(::memfd_create("sound", MFD_CLOEXEC)));
        if (!file_ || ::fcntl(pipe_.get(), F_SETFL, ::fcntl(pipe_.get(), F_GETFL) | O_NONBLOCK) != 0) {
            fail(errno);
        }
        loop_.watch(pipe_.get(), [] {}); // it is enough that the loop wakes
        stage_ = Stage::Gathering;
    } else if (S_ISDIR(status.st_mode)) {
        fail(EISDIR);
    } else {
        throw std::runtime_error("it is neither a file nor a pipe");
    }
}

void SoundFileInput::gather() {
    std::vector<char> bytes(kGatheredAtOnce);
    const ssize_t count = ::read(pipe_.get(), bytes.data(), bytes.size());
    if (count < 0) {
        if (errno != EAGAIN && errno != EINTR) {
            fail(errno);
        }
        return;
    }
    if (count == 0) {
        stopGathering();
        if (::lseek(file_.get(), 0, SEEK_SET) < 0) {
            fail(errno);
        }
        open();
        return;
    }
    gathered_ += static_cast<std::size_t>(count);
    if (gathered_ > kMostGathered) {
        throw std::runtime_error("more comes through the pipe than can be kept");
    }
    for (ssize_t written = 0; written < count;) {
        const ssize_t part =
            ::write(file_.get(), bytes.data() + written, static_cast<std::size_t>(count - written));
        if (part < 0) {
            fail(errno);
        }
        written += part;
    }
}

void SoundFileInput::open() {
    decoder_.emplace(file_.get());
    stage_ = Stage::Reading;
    taker_.began();
}

void SoundFileInput::read() {
    if (const auto samples = decoder_->next()) {
        taker_.take(*samples);
    } else {
        close();
        taker_.ended();
    }
}

void SoundFileInput::close() {
    stage_ = Stage::Over;
    stopGathering();
    decoder_.reset();
    file_.reset();
}

void SoundFileInput::stopGathering() {
    if (pipe_) {
        loop_.unwatch(pipe_.get());
        pipe_.reset();
    }
}

} // namespace zqm::engine
