// What a program that took over an engine would try: each is refused to a process that is confined as an
// engine is.

#include "engine/confinement/file_rules.h"
#include "engine/confinement/landlock.h"
#include "engine/confinement/system_calls.h"
#include "engine/protocol/descriptor.h"
#include "engine/speaker/voices.h"
#include "tests/engine/kernel_confinement.h"
#include "tests/support/temporary_folder.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <pthread.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace zqm::engine;
using zqm::protocol::Descriptor;
using zqm::support::TemporaryFolder;

namespace {

// A user's files, and what an engine is given of them.
struct Home {
    Home() {
        std::ofstream(secret) << "secret";
        std::ofstream(other) << "other";
        std::ofstream(hidden) << "hidden";
        std::filesystem::create_symlink(secret, link);
        std::filesystem::create_directory(output);
        std::ofstream(output / "old.wav") << "old";
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
        EXPECT_EQ(::bind(listening.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        ::listen(listening.get(), 1);
        // An address of the kernel's choice.
        sockaddr_un none{};
        none.sun_family = AF_UNIX;
        EXPECT_EQ(::bind(abstract.get(), reinterpret_cast<const sockaddr*>(&none), sizeof none.sun_family),
                  0);
        ::listen(abstract.get(), 1);
    }

    TemporaryFolder folder;
    std::filesystem::path secret = folder.path() / "secret.txt";
    std::filesystem::path other = folder.path() / "other.txt";
    std::filesystem::path hidden = folder.path() / ".hidden";
    std::filesystem::path link = folder.path() / "link";
    std::filesystem::path output = folder.path() / "output";
    // Passed to an engine:
    Descriptor outputFolder{(std::filesystem::create_directory(output),
                             ::open(output.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC))};
    Descriptor outputFile{::open((output / ".new.wav").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)};
    Descriptor soundFile{::open((output / ".new.wav").c_str(), O_RDONLY | O_CLOEXEC)};
    Descriptor errors{::open((folder.path() / "errors").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600)};
    Descriptor user{static_cast<int>(::syscall(SYS_pidfd_open, ::getpid(), 0))};
    pid_t userProcess = ::getpid();
    // Of a network, opened before: what a filter of calls alone could no more refuse.
    Descriptor listening{::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    Descriptor client{::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    Descriptor abstract{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    // An engine's own data.
    std::filesystem::path voices = std::filesystem::path(voiceFolder()) / "phontab";
};

std::pair<sockaddr_storage, socklen_t> addressOf(int socket) {
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length);
    return {address, length};
}

// An access mode, for which no right to the file is needed.
constexpr int kNeither = O_ACCMODE;

// Of what the refusal is, in the kernel.
enum class By : std::uint8_t { Landlock1, Landlock4, Landlock6, Seccomp };

struct Try {
    const char* name;
    By by;
    // The call's answer; negative, with errno, where it fails.
    long (*attempt)(const Home& home);
    // What the sanitizers' libraries need themselves isn't refused where they are.
    bool alsoSanitized = true;
};

int opened(int descriptor) {
    if (descriptor < 0) {
        return -1;
    }
    ::close(descriptor);
    return 0;
}

int socketOf(int family, int type) {
    return opened(::socket(family, type, 0));
}

const std::array kTries{
    // ---- writes another file
    Try{"makesAFile", By::Landlock1,
        [](const Home& home) -> long {
            return opened(::open((home.folder / "new").c_str(), O_RDWR | O_CREAT, 0600));
        }},
    Try{"makesAFileInTheOutputFolder", By::Landlock1,
        [](const Home& home) -> long {
            return opened(::openat(home.outputFolder.get(), "new", O_RDWR | O_CREAT, 0600));
        }},
    Try{"makesAFileWithoutAName", By::Landlock1,
        [](const Home& home) -> long {
            return opened(::open(home.output.c_str(), O_RDWR | O_TMPFILE, 0600));
        }},
    Try{"writesToAFile", By::Landlock1,
        [](const Home& home) -> long { return opened(::open(home.other.c_str(), O_RDWR)); }},
    Try{"writesToAFileThatItDoesNotRead", By::Seccomp,
        [](const Home& home) -> long { return opened(::open(home.other.c_str(), O_WRONLY)); }},
    Try{"appendsToAFile", By::Landlock1,
        [](const Home& home) -> long { return opened(::open(home.other.c_str(), O_RDWR | O_APPEND)); }},
    Try{"emptiesAFile", By::Seccomp,
        [](const Home& home) -> long { return opened(::open(home.other.c_str(), O_RDWR | O_TRUNC)); }},
    Try{"emptiesAFileThatItNeitherReadsNorWrites", By::Seccomp,
        [](const Home& home) -> long { return opened(::open(home.other.c_str(), kNeither | O_TRUNC)); }},
    Try{"truncatesAFile", By::Seccomp,
        [](const Home& home) -> long { return ::truncate(home.other.c_str(), 0); }},
    Try{"writesToWhatIsGivenForReading", By::Landlock1,
        [](const Home& home) -> long {
            const std::string again = "/proc/self/fd/" + std::to_string(home.soundFile.get());
            return opened(::open(again.c_str(), O_RDWR));
        }},
    Try{"writesToTheVoices", By::Landlock1,
        [](const Home& home) -> long { return opened(::open(home.voices.c_str(), O_RDWR)); }},
    Try{"changesRights", By::Seccomp,
        [](const Home& home) -> long { return ::chmod(home.other.c_str(), 0777); }},
    Try{"changesRightsOfWhatIsGiven", By::Seccomp,
        [](const Home& home) -> long { return ::fchmod(home.outputFile.get(), 04755); }},
    Try{"changesOwners", By::Seccomp,
        [](const Home& home) -> long { return ::chown(home.other.c_str(), 1, 1); }},
    Try{"changesTimes", By::Seccomp,
        [](const Home& home) -> long { return ::utimensat(AT_FDCWD, home.other.c_str(), nullptr, 0); }},
    Try{"changesAttributes", By::Seccomp,
        [](const Home& home) -> long { return ::setxattr(home.other.c_str(), "user.a", "b", 1, 0); }},
    // ---- moves and removes
    Try{"renames", By::Seccomp,
        [](const Home& home) -> long { return ::rename(home.other.c_str(), home.secret.c_str()); }},
    Try{"renamesInTheOutputFolder", By::Seccomp,
        [](const Home& home) -> long {
            return ::renameat(home.outputFolder.get(), ".new.wav", home.outputFolder.get(), "old.wav");
        }},
    Try{"removes", By::Seccomp, [](const Home& home) -> long { return ::unlink(home.other.c_str()); }},
    Try{"removesFromTheOutputFolder", By::Seccomp,
        [](const Home& home) -> long { return ::unlinkat(home.outputFolder.get(), "old.wav", 0); }},
    Try{"removesAFolder", By::Seccomp, [](const Home& home) -> long { return ::rmdir(home.output.c_str()); }},
    Try{"links", By::Seccomp,
        [](const Home& home) -> long { return ::link(home.secret.c_str(), (home.output / "a").c_str()); }},
    Try{"linksSymbolically", By::Seccomp,
        [](const Home& home) -> long { return ::symlink(home.secret.c_str(), (home.output / "a").c_str()); }},
    Try{"makesAFolder", By::Seccomp,
        [](const Home& home) -> long { return ::mkdirat(home.outputFolder.get(), "a", 0700); }},
    Try{"makesAPipe", By::Seccomp,
        [](const Home& home) -> long { return ::mkfifo((home.folder / "a").c_str(), 0600); }},
    // ---- opens what it could name to the process that puts files in their places
    Try{"opensAHiddenFileForNothing", By::Seccomp,
        [](const Home& home) -> long { return opened(::open(home.hidden.c_str(), kNeither)); }},
    Try{"opensAHiddenFileForNothingInTheOutputFolder", By::Seccomp,
        [](const Home& home) -> long {
            return opened(::openat(home.outputFolder.get(), "../.hidden", kNeither));
        }},
    Try{"opensAHiddenFileAsAPlace", By::Seccomp,
        [](const Home& home) -> long { return opened(::open(home.hidden.c_str(), O_PATH)); }},
    Try{"opensAFolderAsAPlace", By::Seccomp,
        [](const Home& home) -> long {
            return opened(::open(home.folder.path().c_str(), O_PATH | O_DIRECTORY));
        }},
    Try{"opensTheFolderAboveItsOutputAsAPlace", By::Seccomp,
        [](const Home& home) -> long {
            return opened(::openat(home.outputFolder.get(), "..", O_PATH | O_DIRECTORY));
        }},
    // ---- reads the user's files
    Try{"readsAFile", By::Landlock1,
        [](const Home& home) -> long { return opened(::open(home.secret.c_str(), O_RDONLY)); }},
    Try{"readsAFileBesideItsOutput", By::Landlock1,
        [](const Home& home) -> long {
            return opened(::openat(home.outputFolder.get(), "old.wav", O_RDONLY));
        }},
    Try{"readsAFileAboveItsOutput", By::Landlock1,
        [](const Home& home) -> long {
            return opened(::openat(home.outputFolder.get(), "../secret.txt", O_RDONLY));
        }},
    Try{"readsAFileByItsHandle", By::Seccomp,
        [](const Home& home) -> long {
            std::array<char, 64> handle{};
            int mount = 0;
            return ::syscall(SYS_name_to_handle_at, AT_FDCWD, home.secret.c_str(), handle.data(), &mount, 0);
        }},
    Try{"listsAFolder", By::Landlock1,
        [](const Home& home) -> long {
            return opened(::open(home.folder.path().c_str(), O_RDONLY | O_DIRECTORY));
        }},
    Try{"readsPasswords", By::Landlock1,
        [](const Home&) -> long { return opened(::open("/etc/passwd", O_RDONLY)); }},
    Try{"readsAnothersMemoryAsAFile", By::Landlock1,
        [](const Home& home) -> long {
            return opened(::open(("/proc/" + std::to_string(home.userProcess) + "/mem").c_str(), O_RDONLY));
        }},
    Try{"readsAnothersEnvironment", By::Landlock1,
        [](const Home& home) -> long {
            return opened(
                ::open(("/proc/" + std::to_string(home.userProcess) + "/environ").c_str(), O_RDONLY));
        }},
    // ---- starts a program, or runs code of its own
    Try{"startsAProgram", By::Seccomp,
        [](const Home&) -> long {
            std::array<char*, 1> none{};
            return ::execve("/bin/true", none.data(), none.data());
        }},
    Try{"startsAProgramFromMemory", By::Seccomp,
        [](const Home&) -> long {
            std::array<char*, 1> none{};
            return ::syscall(SYS_execveat, ::memfd_create("a", 0), "", none.data(), none.data(),
                             AT_EMPTY_PATH);
        }},
    Try{"forks", By::Seccomp, [](const Home&) -> long { return ::syscall(SYS_fork); }},
    Try{"startsAProcess", By::Seccomp,
        [](const Home&) -> long { return ::syscall(SYS_clone, SIGCHLD, nullptr, nullptr, nullptr, nullptr); },
        false},
    Try{"startsAThread", By::Seccomp,
        [](const Home&) -> long {
            pthread_t thread{};
            errno = ::pthread_create(
                &thread, nullptr, [](void*) -> void* { return nullptr; }, nullptr);
            return errno == 0 ? 0 : -1;
        },
        false},
    Try{"mapsCode", By::Seccomp,
        [](const Home&) -> long {
            return ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1,
                          0) == MAP_FAILED
                       ? -1
                       : 0;
        }},
    Try{"turnsDataIntoCode", By::Seccomp,
        [](const Home&) -> long {
            void* const data =
                ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
            return data == MAP_FAILED ? 0 : ::mprotect(data, 4096, PROT_READ | PROT_EXEC);
        }},
    // ---- opens a network
    Try{"opensTcp", By::Seccomp, [](const Home&) -> long { return socketOf(AF_INET, SOCK_STREAM); }},
    Try{"opensUdp", By::Seccomp, [](const Home&) -> long { return socketOf(AF_INET, SOCK_DGRAM); }},
    Try{"opensTcp6", By::Seccomp, [](const Home&) -> long { return socketOf(AF_INET6, SOCK_STREAM); }},
    Try{"opensNetlink", By::Seccomp, [](const Home&) -> long { return socketOf(AF_NETLINK, SOCK_RAW); }},
    Try{"opensPackets", By::Seccomp, [](const Home&) -> long { return socketOf(AF_PACKET, SOCK_RAW); }},
    Try{"opensTheHypervisor", By::Seccomp,
        [](const Home&) -> long { return socketOf(AF_VSOCK, SOCK_STREAM); }},
    Try{"connectsASocketThatItHas", By::Landlock4,
        [](const Home& home) -> long {
            const auto [address, length] = addressOf(home.listening.get());
            return ::connect(home.client.get(), reinterpret_cast<const sockaddr*>(&address), length);
        }},
    Try{"waitsForConnections", By::Seccomp,
        [](const Home& home) -> long { return ::listen(home.client.get(), 1); }},
    Try{"takesAnAddress", By::Seccomp,
        [](const Home& home) -> long {
            sockaddr_in address{};
            address.sin_family = AF_INET;
            return ::bind(home.client.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
        }},
    Try{"connectsToAnAbstractSocket", By::Landlock6,
        [](const Home& home) -> long {
            const Descriptor other(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
            const auto [address, length] = addressOf(home.abstract.get());
            return ::connect(other.get(), reinterpret_cast<const sockaddr*>(&address), length);
        }},
    // ---- does something to another process
    Try{"signals", By::Seccomp, [](const Home& home) -> long { return ::kill(home.userProcess, 0); }},
    Try{"ends", By::Seccomp, [](const Home& home) -> long { return ::kill(home.userProcess, SIGURG); }},
    Try{"signalsAThread", By::Seccomp,
        [](const Home& home) -> long {
            return ::syscall(SYS_tgkill, home.userProcess, home.userProcess, SIGURG);
        }},
    Try{"queuesASignal", By::Seccomp,
        [](const Home& home) -> long { return ::sigqueue(home.userProcess, SIGURG, {}); }},
    Try{"signalsByADescriptor", By::Seccomp,
        [](const Home& home) -> long {
            return ::syscall(SYS_pidfd_send_signal, home.user.get(), 0, nullptr, 0);
        }},
    Try{"takesAnothersDescriptor", By::Seccomp,
        [](const Home& home) -> long { return ::syscall(SYS_pidfd_getfd, home.user.get(), 0, 0); }},
    Try{"hasAnotherSignalled", By::Seccomp,
        [](const Home& home) -> long { return ::fcntl(home.outputFile.get(), F_SETOWN, home.userProcess); }},
    Try{"traces", By::Seccomp,
        [](const Home& home) -> long { return ::ptrace(PTRACE_SEIZE, home.userProcess, nullptr, nullptr); },
        false},
    Try{"readsAnothersMemory", By::Seccomp,
        [](const Home& home) -> long {
            char byte = 0;
            const iovec ours{&byte, 1};
            const iovec theirs{&byte, 1};
            return ::process_vm_readv(home.userProcess, &ours, 1, &theirs, 1, 0);
        }},
    Try{"writesAnothersMemory", By::Seccomp,
        [](const Home& home) -> long {
            char byte = 0;
            const iovec ours{&byte, 1};
            const iovec theirs{&byte, 1};
            return ::process_vm_writev(home.userProcess, &ours, 1, &theirs, 1, 0);
        }},
    Try{"slowsAnother", By::Seccomp,
        [](const Home& home) -> long {
            return ::setpriority(PRIO_PROCESS, static_cast<id_t>(home.userProcess), 0);
        }},
    Try{"controlsADevice", By::Seccomp,
        [](const Home& home) -> long {
            winsize size{};
            return ::ioctl(home.outputFile.get(), TIOCGWINSZ, &size);
        },
        false},
    // ---- gets more rights, or at more of the kernel
    Try{"becomesAnother", By::Seccomp, [](const Home&) -> long { return ::syscall(SYS_setuid, 0); }},
    Try{"joinsAGroup", By::Seccomp, [](const Home&) -> long { return ::syscall(SYS_setgid, 0); }},
    Try{"changesALimit", By::Seccomp,
        [](const Home&) -> long {
            const rlimit limit{1, 1};
            return ::prlimit(0, RLIMIT_NOFILE, &limit, nullptr);
        }},
    Try{"changesItself", By::Seccomp,
        [](const Home&) -> long { return ::prctl(PR_SET_DUMPABLE, 1, 0, 0, 0); }, false},
    Try{"mounts", By::Seccomp,
        [](const Home& home) -> long {
            return ::mount("none", home.output.c_str(), "no-such-thing", 0, nullptr);
        }},
    Try{"hasANamespace", By::Seccomp, [](const Home&) -> long { return ::unshare(CLONE_NEWUSER); }},
    Try{"changesTheRoot", By::Seccomp,
        [](const Home& home) -> long { return ::chroot(home.folder.path().c_str()); }},
    Try{"loadsAProgramIntoTheKernel", By::Seccomp,
        [](const Home&) -> long { return ::syscall(SYS_bpf, 0, nullptr, 0); }},
    Try{"hasCallsMade", By::Seccomp,
        [](const Home&) -> long { return ::syscall(SYS_io_uring_setup, 1, nullptr); }},
    Try{"measuresTheKernel", By::Seccomp,
        [](const Home&) -> long { return ::syscall(SYS_perf_event_open, nullptr, 0, -1, -1, 0); }},
    Try{"servesItsFaults", By::Seccomp, [](const Home&) -> long { return ::syscall(SYS_userfaultfd, 0); }},
    Try{"asksForKeys", By::Seccomp, [](const Home&) -> long { return ::syscall(SYS_keyctl, 0, 0, 0, 0, 0); }},
};

// What stays possible, as docs/reliability.md says, and what of the kernel has no means against it.
const std::array kPossible{
    Try{"seesWhatIsKnownOfAFile", By::Landlock1,
        [](const Home& home) -> long {
            struct stat status {};
            return ::stat(home.secret.c_str(), &status);
        }},
    Try{"seesWhetherAFileMayBeRead", By::Landlock1,
        [](const Home& home) -> long { return ::access(home.secret.c_str(), R_OK); }},
    Try{"seesWhereALinkLeads", By::Landlock1,
        [](const Home& home) -> long {
            std::array<char, 64> target{};
            return ::readlink(home.link.c_str(), target.data(), target.size());
        }},
    Try{"writesToStandardError", By::Seccomp,
        [](const Home& home) -> long { return ::write(home.errors.get(), "\033[2J", 4); }},
    Try{"emptiesStandardErrorWhereItIsAFile", By::Seccomp,
        [](const Home& home) -> long { return ::ftruncate(home.errors.get(), 0); }},
};

template <typename Tries>
std::vector<Try> triesOf(const Tries& tries) {
    std::vector<Try> list;
    list.reserve(std::size(tries));
    for (const Try& one : tries) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        if (!one.alsoSanitized) {
            continue;
        }
#endif
        list.push_back(one);
    }
    return list;
}

void PrintTo(const Try& one, std::ostream* stream) {
    *stream << one.name;
}

class Confined : public testing::TestWithParam<Try> {
protected:
    // The error's number in a process like this one, confined or not; 0: it was done.
    int outcome(bool confined) const {
        const pid_t process = ::fork();
        if (process == 0) {
            if (confined) {
                restrictFiles(fileRules());
                restrictSystemCalls(Work::Speech);
            }
            errno = 0;
            ::_exit(GetParam().attempt(home_) < 0 ? errno : 0);
        }
        int status = 0;
        ::waitpid(process, &status, 0);
        EXPECT_TRUE(WIFEXITED(status)) << "by signal " << WTERMSIG(status);
        return WEXITSTATUS(status);
    }

    static std::string missing(By by) {
        constexpr std::array kVersions{1, 4, 6};
        if (by == By::Seccomp) {
            return zqm::test::kernelFiltersSystemCalls() ? "" : "there is no seccomp here";
        }
        const int needed = kVersions.at(static_cast<std::size_t>(by));
        const int version = zqm::test::kernelLandlockVersion();
        return version >= needed ? ""
                                 : "this kernel has Landlock " + std::to_string(version) + ", which needs " +
                                       std::to_string(needed);
    }

    Home home_;
};

bool isRefusal(int error) {
    return error == EPERM || error == EACCES;
}

// Nothing that is tried is refused to the superuser, but in a container that has less than all capabilities.
bool mayAdministrate() {
    return ::geteuid() == 0 && ::prctl(PR_CAPBSET_READ, CAP_SYS_ADMIN, 0, 0, 0) == 1;
}

class ConfinedAllTheSame : public Confined {};

TEST_P(ConfinedAllTheSame, isPossible) {
    EXPECT_EQ(outcome(true), 0);
}

INSTANTIATE_TEST_SUITE_P(Tries, ConfinedAllTheSame, testing::ValuesIn(triesOf(kPossible)),
                         [](const auto& one) { return std::string(one.param.name); });

TEST_P(Confined, isRefused) {
    if (const std::string cause = missing(GetParam().by); !cause.empty()) {
        GTEST_SKIP() << cause;
    }
    const int error = outcome(true);
    EXPECT_TRUE(isRefusal(error)) << std::generic_category().message(error);
    std::ifstream secret(home_.secret);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(secret), {}), "secret");
    // It is the confinement that refuses it.
    if (isRefusal(outcome(false))) {
        ASSERT_FALSE(mayAdministrate()) << "refused to a process that isn't confined, too";
        GTEST_SKIP() << "refused to this user in any case";
    }
}

INSTANTIATE_TEST_SUITE_P(Tries, Confined, testing::ValuesIn(triesOf(kTries)),
                         [](const auto& one) { return std::string(one.param.name); });

} // namespace
