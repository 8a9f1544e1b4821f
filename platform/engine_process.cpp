#include "platform/engine_process.h"

#include "engine/protocol/protocol.h"
#include "platform/ending_engines.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace zqm::platform {
namespace {

using protocol::Descriptor;

class SpawnSettings {
public:
    SpawnSettings() {
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawnattr_init(&attributes);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        ::posix_spawn_file_actions_destroy(&actions);
        ::posix_spawnattr_destroy(&attributes);
    }

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

// Its own process group (a Ctrl-C in the terminal is the host's affair), every signal as at the start of a
// program, and of the host's descriptors only the socket and standard error.
void describe(SpawnSettings& settings, int socket) {
    sigset_t all;
    sigset_t none;
    sigfillset(&all);
    sigemptyset(&none);
    ::posix_spawnattr_setflags(&settings.attributes,
                               POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    ::posix_spawnattr_setpgroup(&settings.attributes, 0);
    ::posix_spawnattr_setsigdefault(&settings.attributes, &all);
    ::posix_spawnattr_setsigmask(&settings.attributes, &none);

    auto* const actions = &settings.actions;
    ::posix_spawn_file_actions_adddup2(actions, socket, protocol::kEngineSocket);
    ::posix_spawn_file_actions_addopen(actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    if (::fcntl(STDERR_FILENO, F_GETFD) < 0) {
        ::posix_spawn_file_actions_addopen(actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    ::posix_spawn_file_actions_addclosefrom_np(actions, protocol::kEngineSocket + 1);
}

// One that has only begun.
void killAtOnce(pid_t process) {
    ::kill(process, SIGKILL);
    while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

} // namespace

Descriptor aboveStandardDescriptors(Descriptor descriptor) {
    if (!descriptor || descriptor.get() > STDERR_FILENO) {
        return descriptor;
    }
    Descriptor copy(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!copy && errno == EINVAL) {
        errno = EMFILE; // none above these is allowed
    }
    return copy;
}

std::optional<EngineProcess> EngineProcess::start(const std::string& path, Descriptor& socket,
                                                  std::string& error) {
    EndingEngines::shared().takeMessages();
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        error = std::string("no socket for the speech engine: ") + std::strerror(errno);
        return std::nullopt;
    }
    Descriptor ours(ends[0]);
    Descriptor theirs(ends[1]);
    ours = aboveStandardDescriptors(std::move(ours));
    theirs = aboveStandardDescriptors(std::move(theirs));
    if (!ours || !theirs) {
        error = std::string("no socket for the speech engine: ") + std::strerror(errno);
        return std::nullopt;
    }
    SpawnSettings settings;
    describe(settings, theirs.get());
    std::string name = path;
    std::array<char*, 2> arguments{name.data(), nullptr};
    pid_t process = -1;
    const int failure = ::posix_spawn(&process, path.c_str(), &settings.actions, &settings.attributes,
                                      arguments.data(), environ);
    if (failure != 0) {
        error = "the speech engine " + path + " can't be started: " + std::strerror(failure);
        return std::nullopt;
    }
    // The place of this one is free for the descriptor of the process.
    theirs.reset();
    ChildProcess child(process);
    if (!child.isKnown()) {
        if (errno == ESRCH) {
            error = kEngineEnded;
        } else {
            error = std::string("the speech engine can't be watched: ") + std::strerror(errno);
            killAtOnce(process);
        }
        return std::nullopt;
    }
    socket = std::move(ours);
    return EngineProcess(std::move(child));
}

EngineProcess::~EngineProcess() {
    if (child_.isKnown() && owner_.isCurrent()) {
        EndingEngines::shared().add(std::move(child_), std::move(afterEnd_));
        EndingEngines::shared().takeMessages();
    }
}

void EngineProcess::kill() const {
    if (owner_.isCurrent()) {
        child_.kill();
    }
}

} // namespace zqm::platform
