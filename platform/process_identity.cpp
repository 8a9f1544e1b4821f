#include "platform/process_identity.h"

#include <atomic>
#include <cstddef>
#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace zqm::platform {
namespace {

using Number = std::atomic<pid_t>;

// Memory that is empty in a fork that has its own copy of memory, however it was made; others run no code of
// ours. Null: the system gives none.
Number* makeNumber() {
    constexpr std::size_t kBytes = sizeof(Number);
    void* const memory = ::mmap(nullptr, kBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        return nullptr;
    }
    if (::madvise(memory, kBytes, MADV_WIPEONFORK) != 0) {
        ::munmap(memory, kBytes);
        return nullptr;
    }
    return new (memory) Number(0);
}

} // namespace

// The system's answer is kept: each event asks several times.
pid_t currentProcess() {
    static Number* const number = makeNumber(); // for the life of the process
    if (number == nullptr) {
        return ::getpid();
    }
    pid_t process = number->load(std::memory_order_relaxed);
    if (process == 0) {
        process = ::getpid();
        number->store(process, std::memory_order_relaxed);
    }
    return process;
}

} // namespace zqm::platform
