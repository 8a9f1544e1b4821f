#include "engine/engine.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <string_view>
#include <sys/socket.h>

namespace {

constexpr const char* kHelp =
    "zqmspeech-engine speaks for a program that uses libzqmplatform, which starts it and talks to it over\n"
    "descriptor 3. It can't be used by hand: see the command zqmspeech.\n"
    "\n"
    "  --version  print the version\n"
    "  --help     print this\n";

bool isStreamSocket(int descriptor) {
    int family = 0;
    int type = 0;
    socklen_t length = sizeof family;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_DOMAIN, &family, &length) == 0 && family == AF_UNIX &&
           ::getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &length) == 0 && type == SOCK_STREAM;
}

int print(const char* text) {
    return std::fputs(text, stdout) >= 0 && std::fflush(stdout) == 0 ? zqm::engine::kExitOk
                                                                     : zqm::engine::kExitFailure;
}

} // namespace

int main(int argc, char** argv) {
    using zqm::protocol::Descriptor;
    using zqm::protocol::kEngineSocket;
    if (argc == 2 && std::string_view(argv[1]) == "--version") {
        return print("zqmspeech-engine " ZQM_VERSION "\n");
    }
    if (argc == 2 && std::string_view(argv[1]) == "--help") {
        return print(kHelp);
    }
    if (argc != 1 || !isStreamSocket(kEngineSocket)) {
        static_cast<void>(std::fputs(
            "zqmspeech-engine: started by a program that speaks, not by hand (see --help)\n", stderr));
        return zqm::engine::kExitUsage;
    }
    // A reader that went away, or a limit on the size of files, is an error to be reported, not an end.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    // The sound library has complaints of its own, and standard error is that of the program that speaks.
    ::setenv("PULSE_LOG_SYSLOG", "1", 0);
    ::fcntl(kEngineSocket, F_SETFD, FD_CLOEXEC);
    try {
        return zqm::engine::Engine(Descriptor(kEngineSocket)).run();
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "zqmspeech-engine: %s\n", error.what()));
        return zqm::engine::kExitFailure;
    }
}
