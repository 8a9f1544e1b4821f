#include "engine/confinement/system_calls.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <initializer_list>
#include <linux/seccomp.h>
#include <memory>
#include <optional>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>

namespace zqm::engine {
namespace {

// A condition on one argument: that all bits of the mask have the value.
struct Condition {
    unsigned argument;
    std::uint64_t mask;
    std::uint64_t value;
};

struct Call {
    int number;
    std::optional<Condition> condition = std::nullopt;
};

constexpr std::uint64_t kAllBits = ~std::uint64_t{0};

constexpr Condition is(unsigned argument, std::uint64_t value) {
    return {argument, kAllBits, value};
}

constexpr Condition lacks(unsigned argument, std::uint64_t bits) {
    return {argument, bits, 0};
}

// What any program of the C library needs, and does no harm: memory, time, signals to itself, what it has
// open. Older and newer forms of a call stand side by side, since it is the library that chooses.
constexpr std::array kCommon{
    Call{SCMP_SYS(brk)},
    Call{SCMP_SYS(mmap), lacks(2, PROT_EXEC)}, // no new code
    Call{SCMP_SYS(mprotect), lacks(2, PROT_EXEC)},
    Call{SCMP_SYS(mremap)},
    Call{SCMP_SYS(munmap)},
    Call{SCMP_SYS(madvise)},
    Call{SCMP_SYS(futex)},
    Call{SCMP_SYS(sched_yield)},
    Call{SCMP_SYS(rt_sigaction)},
    Call{SCMP_SYS(rt_sigprocmask)},
    Call{SCMP_SYS(rt_sigreturn)},
    Call{SCMP_SYS(sigaltstack)},
    Call{SCMP_SYS(alarm)},
    Call{SCMP_SYS(restart_syscall)}, // the kernel's own, after a signal
    Call{SCMP_SYS(exit)},
    Call{SCMP_SYS(exit_group)},
    Call{SCMP_SYS(getpid)},
    Call{SCMP_SYS(gettid)},
    Call{SCMP_SYS(getuid)},
    Call{SCMP_SYS(geteuid)},
    Call{SCMP_SYS(getgid)},
    Call{SCMP_SYS(getegid)},
    Call{SCMP_SYS(clock_gettime)},
    Call{SCMP_SYS(clock_getres)},
    Call{SCMP_SYS(clock_nanosleep)},
    Call{SCMP_SYS(nanosleep)},
    Call{SCMP_SYS(gettimeofday)},
    Call{SCMP_SYS(time)},
    Call{SCMP_SYS(getrandom)},
    Call{SCMP_SYS(read)},
    Call{SCMP_SYS(readv)},
    Call{SCMP_SYS(pread64)},
    Call{SCMP_SYS(write)},
    Call{SCMP_SYS(writev)},
    Call{SCMP_SYS(pwrite64)},
    Call{SCMP_SYS(lseek)},
    Call{SCMP_SYS(close)},
    Call{SCMP_SYS(dup)},
    Call{SCMP_SYS(fstat)},
    Call{SCMP_SYS(newfstatat)},
    Call{SCMP_SYS(statx)},
    Call{SCMP_SYS(readlink)},
    Call{SCMP_SYS(readlinkat)},
    Call{SCMP_SYS(fcntl), is(1, F_GETFD)},
    Call{SCMP_SYS(fcntl), is(1, F_SETFD)},
    Call{SCMP_SYS(fcntl), is(1, F_GETFL)},
    Call{SCMP_SYS(fcntl), is(1, F_SETFL)},
    Call{SCMP_SYS(fcntl), is(1, F_DUPFD)},
    Call{SCMP_SYS(fcntl), is(1, F_DUPFD_CLOEXEC)},
    Call{SCMP_SYS(poll)},
    Call{SCMP_SYS(ppoll)},
    Call{SCMP_SYS(recvmsg)},
    Call{SCMP_SYS(sendmsg)},
};

// Files are opened for reading, or for reading and writing, and none is emptied. The rules for files know no
// right for the access mode 3, by which a file is open for neither, nor for O_PATH: any file could be opened
// so. Both that mode and O_WRONLY have the bit of the latter.
constexpr std::uint64_t kNeverOpened = O_WRONLY | O_PATH | O_TRUNC;

// Of an engine beside that. Which files it opens is said by the rules for files.
constexpr std::array kSpeech{
    Call{SCMP_SYS(open), lacks(1, kNeverOpened)}, // voices, models, settings of the sound server's client
    Call{SCMP_SYS(openat), lacks(2, kNeverOpened)},
    Call{SCMP_SYS(stat)},
    Call{SCMP_SYS(lstat)},
    Call{SCMP_SYS(access)},
    Call{SCMP_SYS(faccessat)},
    Call{SCMP_SYS(faccessat2)},
    Call{SCMP_SYS(getdents64)},
    Call{SCMP_SYS(fadvise64)},
    Call{SCMP_SYS(ftruncate)}, // sound files, and what holds sound
    Call{SCMP_SYS(fallocate)},
    Call{SCMP_SYS(fsync)},
    Call{SCMP_SYS(memfd_create)}, // sound shared with its server, or from a pipe
    Call{SCMP_SYS(fcntl), is(1, F_ADD_SEALS)},
    Call{SCMP_SYS(fcntl), is(1, F_SETLK)}, // the sound server's cookie
    Call{SCMP_SYS(fcntl), is(1, F_SETLKW)},
    Call{SCMP_SYS(fcntl), is(1, F_OFD_SETLK)}, // who speaks and who is heard
    Call{SCMP_SYS(fcntl), is(1, F_OFD_GETLK)},
    Call{SCMP_SYS(socket), is(0, AF_UNIX)}, // the sound server, and the system's log
    Call{SCMP_SYS(connect)},
    Call{SCMP_SYS(sendto)},
    Call{SCMP_SYS(recvfrom)},
    Call{SCMP_SYS(shutdown)},
    Call{SCMP_SYS(getsockopt)},
    Call{SCMP_SYS(setsockopt)},
    Call{SCMP_SYS(getsockname)},
    Call{SCMP_SYS(getpeername)},
    Call{SCMP_SYS(pipe2)}, // the loop's own
    Call{SCMP_SYS(eventfd2)},
    Call{SCMP_SYS(umask)},   // its client, before it would make a folder
    Call{SCMP_SYS(uname)},   // its client's names for itself
    Call{SCMP_SYS(sysinfo)}, // sorting asks how much memory there is
    Call{SCMP_SYS(sched_getaffinity)},
    Call{SCMP_SYS(getrusage)},           // processor time, which espeak-ng and PocketSphinx measure
    Call{SCMP_SYS(prlimit64), is(2, 0)}, // asked, never set
    Call{SCMP_SYS(wait4)},               // for the process that puts files in their places
};

constexpr std::array kPutInPlace{
    Call{SCMP_SYS(linkat)},
    Call{SCMP_SYS(renameat)},
    Call{SCMP_SYS(renameat2)},
    Call{SCMP_SYS(unlinkat)},
};

// Calls that fail otherwise than the rest, so that who calls them goes on as is right.
struct Answer {
    int number;
    int error;
};
constexpr std::array kAnswers{
    Answer{SCMP_SYS(clone3), ENOSYS},  // the C library then tries clone, whose arguments can be looked at
    Answer{SCMP_SYS(openat2), ENOSYS}, // likewise, openat
    Answer{SCMP_SYS(mkdir), EEXIST},   // the sound server's client goes on to use a folder that is there
};

// What only the sanitizers' run-time libraries do, in builds that nobody is given.
#if defined(__SANITIZE_ADDRESS__)
constexpr std::array kSanitizers{
    Call{SCMP_SYS(clone)},  // the search for leaks at the end goes on in a thread of its own,
    Call{SCMP_SYS(ptrace)}, // which stops the others,
    Call{SCMP_SYS(prctl)},  // and may do so
    Call{SCMP_SYS(getdents)},      Call{SCMP_SYS(getppid)},         Call{SCMP_SYS(waitid)},
    Call{SCMP_SYS(rt_sigpending)}, Call{SCMP_SYS(set_robust_list)}, Call{SCMP_SYS(rseq)},
    Call{SCMP_SYS(ioctl)}, // is standard error a terminal?
};
#elif defined(__SANITIZE_THREAD__)
constexpr std::array kSanitizers{
    Call{SCMP_SYS(rseq)}, // a thread of its own, which may only begin when the filter is there
    Call{SCMP_SYS(set_robust_list)},
    Call{SCMP_SYS(prctl)}, // names and memory
    Call{SCMP_SYS(personality)},
    Call{SCMP_SYS(ioctl)}, // is standard error a terminal?
};
#else
constexpr std::array<Call, 0> kSanitizers{};
#endif

using Filter = std::unique_ptr<void, decltype(&::seccomp_release)>;

void check(int result) {
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), "seccomp");
    }
}

void allow(scmp_filter_ctx filter, const Call& call) {
    if (call.condition) {
        const auto& [argument, mask, value] = *call.condition;
        const scmp_arg_cmp comparison{argument, SCMP_CMP_MASKED_EQ, mask, value};
        check(::seccomp_rule_add_array(filter, SCMP_ACT_ALLOW, call.number, 1, &comparison));
    } else {
        check(::seccomp_rule_add_array(filter, SCMP_ACT_ALLOW, call.number, 0, nullptr));
    }
}

template <typename Calls>
void allowAll(scmp_filter_ctx filter, const Calls& calls) {
    for (const Call& call : calls) {
        allow(filter, call);
    }
}

// Since Linux 4.14 it can be asked.
bool hasFilters() {
    const std::uint32_t kind = SECCOMP_RET_ERRNO;
    return ::syscall(SYS_seccomp, SECCOMP_GET_ACTION_AVAIL, 0, &kind) == 0;
}

} // namespace

bool restrictSystemCalls(Work work) {
    if (!hasFilters()) {
        return false;
    }
    // An error, and no end: a library that tries something else one day speaks on without.
    const Filter filter(::seccomp_init(SCMP_ACT_ERRNO(EPERM)), &::seccomp_release);
    if (!filter) {
        throw std::system_error(ENOMEM, std::generic_category(), "seccomp");
    }
    check(::seccomp_attr_set(filter.get(), SCMP_FLTATR_CTL_TSYNC, 1));
    allowAll(filter.get(), kCommon);
    allowAll(filter.get(), kSanitizers);
    if (work == Work::Speech) {
        allowAll(filter.get(), kSpeech);
    } else {
        allowAll(filter.get(), kPutInPlace);
    }
    const auto own = static_cast<std::uint64_t>(::getpid());
    allow(filter.get(), {SCMP_SYS(tgkill), is(0, own)}); // how a program ends itself on a broken promise
    for (const Answer& answer : kAnswers) {
        check(::seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(static_cast<unsigned>(answer.error)),
                                 answer.number, 0));
    }
    check(::seccomp_load(filter.get()));
    return true;
}

} // namespace zqm::engine
