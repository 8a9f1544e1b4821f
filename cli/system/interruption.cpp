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
volatile std::sig_atomic_t isDelayed = 0; // the end
volatile std::sig_atomic_t delayed = 0;   // the signal whose end was; 0: none

// Both do only what a handler may.
extern "C" void end(int signalNumber) {
    if (isDelayed != 0) {
        received = signalNumber;
        delayed = signalNumber;
        return;
    }
    removeTemporaryFolder();
    install(signalNumber, SIG_DFL);
    raise(signalNumber); // comes when a handler that runs has returned
}

extern "C" void note(int signalNumber) {
    received = signalNumber;
    install(signalNumber, end);
}

struct Watched {
    int signalNumber;
    Handler handler;
};
// By which others end a process, or a timer or limit does, or abort().
constexpr std::array kWatched{
    Watched{SIGINT, note},   Watched{SIGTERM, note}, Watched{SIGHUP, note}, Watched{SIGQUIT, end},
    Watched{SIGABRT, end},   Watched{SIGALRM, end},  Watched{SIGUSR1, end}, Watched{SIGUSR2, end},
    Watched{SIGVTALRM, end}, Watched{SIGPROF, end},  Watched{SIGXCPU, end},
};

std::array<struct sigaction, kWatched.size()> earlier;

} // namespace

Interruption::Interruption() {
    received = 0;
    for (std::size_t index = 0; index < kWatched.size(); ++index) {
        sigaction(kWatched[index].signalNumber, nullptr, &earlier[index]);
        if (earlier[index].sa_handler == SIG_DFL) {
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

DelayedEnd::DelayedEnd() {
    isDelayed = 1;
}

DelayedEnd::~DelayedEnd() {
    isDelayed = 0;
    if (delayed != 0) {
        end(delayed);
    }
}

} // namespace zqm::cli
