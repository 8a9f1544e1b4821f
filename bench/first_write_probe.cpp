// Preloaded into an engine, this notes when it hands the first sound of a speech to the sound server: in the
// first eight bytes of the file that ZQM_FIRST_WRITE names, as nanoseconds of CLOCK_MONOTONIC, if they are
// zero by then. The call itself goes on as ever.

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <pulse/stream.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

using Time = std::atomic<std::int64_t>;
static_assert(sizeof(Time) == sizeof(std::int64_t) && Time::is_always_lock_free);

// Before main: later the engine may open no file.
Time* mapped() {
    const char* const path = std::getenv("ZQM_FIRST_WRITE");
    const int file = path != nullptr ? ::open(path, O_RDWR | O_CLOEXEC) : -1;
    if (file < 0) {
        return nullptr;
    }
    void* const memory = ::mmap(nullptr, sizeof(Time), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ::close(file);
    return memory == MAP_FAILED ? nullptr : static_cast<Time*>(memory);
}

Time* const firstWrite = mapped();
void* const realWrite = ::dlsym(RTLD_NEXT, "pa_stream_write");

} // namespace

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the header's are C's
extern "C" [[gnu::visibility("default")]] int pa_stream_write(pa_stream* stream, const void* data,
                                                              std::size_t bytes, pa_free_cb_t release,
                                                              std::int64_t offset, pa_seek_mode_t seek) {
    if (firstWrite != nullptr) {
        constexpr std::int64_t kNanoseconds = 1000000000;
        timespec now{};
        ::clock_gettime(CLOCK_MONOTONIC, &now);
        std::int64_t none = 0;
        firstWrite->compare_exchange_strong(none, now.tv_sec * kNanoseconds + now.tv_nsec);
    }
    return reinterpret_cast<decltype(&pa_stream_write)>(realWrite)(stream, data, bytes, release, offset,
                                                                   seek);
}
