#include "cli/system/interruption.h"

#include "cli/system/temporary_folder.h"

#include <array>
#include <csignal>

#include <signal.h>

namespace zqm::cli {
namespace {

using Handler = void (*)(int);

void install(int signalNumber, Handler handler) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigaction(signalNumber, &action, nullptr);
}

volatile std::sig_atomic_t received = 0;

// Both do only what a handler may.
extern "C" void end(int signalNumber) {
    removeTemporaryFolder();
    install(signalNumber, SIG_DFL);
    raise(signalNumber); // comes when this returns
}

extern "C" void note(int signalNumber) {
    received = signalNumber;
    install(signalNumber, end);
}

struct Watched {
    int signalNumber;
    Handler handler;
};
constexpr std::array kWatched{Watched{SIGINT, note}, Watched{SIGTERM, note}, Watched{SIGHUP, note},
                              Watched{SIGQUIT, end}};

std::array<struct sigaction, kWatched.size()> earlier;

} // namespace

Interruption::Interruption() {
    received = 0;
    for (std::size_t index = 0; index < kWatched.size(); ++index) {
        sigaction(kWatched[index].signalNumber, nullptr, &earlier[index]);
        if (earlier[index].sa_handler != SIG_IGN) {
            install(kWatched[index].signalNumber, kWatched[index].handler);
        }
    }
}

Interruption::~Interruption() {
    for (std::size_t index = 0; index < kWatched.size(); ++index) {
        sigaction(kWatched[index].signalNumber, &earlier[index], nullptr);
    }
    received = 0;
}

int Interruption::signalNumber() {
    return received;
}

} // namespace zqm::cli
