// Preloaded into an engine, this notes when libespeak-ng makes the first sound of a speech and when the
// engine hands the first to the sound server (bench/support/first_sound_times.h). The calls themselves go on
// as ever.

#include "bench/support/first_sound_times.h"

#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <espeak-ng/speak_lib.h>
#include <fcntl.h>
#include <pulse/stream.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

using zqm::bench::FirstSoundTimes;

// Before main: later the engine may open no file.
FirstSoundTimes* mapped() {
    const char* const path = std::getenv("ZQM_FIRST_SOUND");
    const int file = path != nullptr ? ::open(path, O_RDWR | O_CLOEXEC) : -1;
    if (file < 0) {
        return nullptr;
    }
    void* const memory =
        ::mmap(nullptr, sizeof(FirstSoundTimes), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ::close(file);
    return memory == MAP_FAILED ? nullptr : static_cast<FirstSoundTimes*>(memory);
}

FirstSoundTimes* const times = mapped();
void* const realWrite = ::dlsym(RTLD_NEXT, "pa_stream_write");
void* const realSetCallback = ::dlsym(RTLD_NEXT, "espeak_SetSynthCallback");
t_espeak_callback* callbackOfEngine = nullptr;

void note(std::atomic<std::int64_t> FirstSoundTimes::*member) {
    constexpr std::int64_t kNanoseconds = 1000000000;
    if (times != nullptr) {
        timespec now{};
        ::clock_gettime(CLOCK_MONOTONIC, &now);
        std::int64_t none = 0;
        (times->*member).compare_exchange_strong(none, now.tv_sec * kNanoseconds + now.tv_nsec);
    }
}

int noteSamples(short* samples, int count, espeak_EVENT* events) {
    if (samples != nullptr && count > 0) {
        note(&FirstSoundTimes::made);
    }
    return callbackOfEngine(samples, count, events);
}

} // namespace

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): the headers' are C's
extern "C" [[gnu::visibility("default")]] int pa_stream_write(pa_stream* stream, const void* data,
                                                              std::size_t bytes, pa_free_cb_t release,
                                                              std::int64_t offset, pa_seek_mode_t seek) {
    note(&FirstSoundTimes::handed);
    return reinterpret_cast<decltype(&pa_stream_write)>(realWrite)(stream, data, bytes, release, offset,
                                                                   seek);
}

extern "C" [[gnu::visibility("default")]] void espeak_SetSynthCallback(t_espeak_callback* callback) {
    callbackOfEngine = callback;
    reinterpret_cast<decltype(&espeak_SetSynthCallback)>(realSetCallback)(noteSamples);
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
