#include "engine/confinement/file_rules.h"
#include "engine/confinement/landlock.h"
#include "engine/confinement/privileges.h"
#include "engine/confinement/system_calls.h"
#include "engine/engine.h"
#include "engine/error_output.h"
#include "engine/host_end.h"
#include "engine/output/file_placer.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/socket.h>

namespace {

constexpr const char* kHelp =
    "zqmspeech-engine speaks for a program that uses libzqmplatform, which starts it and talks to it over\n"
    "descriptor 3. It can't be used by hand: see the command zqmspeech.\n"
    "\n"
    "  --version      print the version\n"
    "  --confinement  print what the kernel keeps an engine from\n"
    "  --help         print this\n";

bool isStreamSocket(int descriptor) {
    int family = 0;
    int type = 0;
    socklen_t length = sizeof family;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_DOMAIN, &family, &length) == 0 && family == AF_UNIX &&
           ::getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &length) == 0 && type == SOCK_STREAM;
}

// With fewer, espeak-ng finds only some of its voices and doesn't say so.
bool canOpenFiles() {
    constexpr int kFiles = 16;
    std::array<zqm::protocol::Descriptor, kFiles> files;
    for (auto& file : files) {
        file.reset(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    }
    return static_cast<bool>(files.back());
}

int print(const char* text) {
    return std::fputs(text, stdout) >= 0 && std::fflush(stdout) == 0 ? zqm::engine::kExitOk
                                                                     : zqm::engine::kExitFailure;
}

// By doing to itself what is done to an engine.
int printConfinement() {
    const int landlock = zqm::engine::restrictFiles(zqm::engine::fileRules());
    const bool seccomp = zqm::engine::restrictSystemCalls(zqm::engine::Work::Speech);
    const std::string files = landlock > 0 ? "reads its data alone, writes what it is given (Landlock " +
                                                 std::to_string(landlock) + ")"
                                           : "not confined: the kernel offers no Landlock";
    const std::string calls =
        seccomp ? "those that it needs (seccomp)" : "not confined: the kernel offers no seccomp";
    return print(("files:         " + files + "\nsystem calls:  " + calls + "\n").c_str());
}

} // namespace

int main(int argc, char** argv) {
    using zqm::protocol::Descriptor;
    using zqm::protocol::kEngineSocket;
    if (argc == 2 && std::string_view(argv[1]) == "--version") {
        return print("zqmspeech-engine " ZQM_VERSION "\n");
    }
    if (argc == 2 && std::string_view(argv[1]) == "--confinement") {
        return printConfinement();
    }
    if (argc == 2 && std::string_view(argv[1]) == "--help") {
        return print(kHelp);
    }
    if (argc != 1 || !isStreamSocket(kEngineSocket)) {
        zqm::engine::tellError("started by a program that speaks, not by hand (see --help)");
        return zqm::engine::kExitUsage;
    }
    if (!canOpenFiles()) {
        zqm::engine::tellError(std::strerror(errno));
        return zqm::engine::kExitFailure;
    }
    // A reader that went away, or a limit on the size of files, is an error to be reported, not an end.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    // The sound library has complaints of its own, and standard error is that of the program that speaks.
    ::setenv("PULSE_LOG_SYSLOG", "1", 0);
    ::fcntl(kEngineSocket, F_SETFD, FD_CLOEXEC);
    zqm::engine::endAfterHost();
    try {
        // In this order: what is begun before a confinement is outside of it, and espeak-ng begins a thread.
        zqm::engine::refuseNewPrivileges();
        zqm::engine::silenceLibraries();
        const zqm::engine::FilePlacer placer;
        zqm::engine::restrictFiles(zqm::engine::fileRules());
        zqm::engine::Engine engine(Descriptor(kEngineSocket), placer);
        zqm::engine::restrictSystemCalls(zqm::engine::Work::Speech);
        return engine.run();
    } catch (const std::exception& error) {
        zqm::engine::tellError(error.what());
        return zqm::engine::kExitFailure;
    }
}
