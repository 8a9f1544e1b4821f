#include "cli/system/interruption.h"

#include <array>
#include <csignal>

#include <signal.h>

namespace zqm::cli {
namespace {

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t received = 0;
std::array<struct sigaction, kSignals.size()> earlier;

extern "C" void note(int signalNumber) {
    received = signalNumber;
}

} // namespace

Interruption::Interruption() {
    received = 0;
    for (std::size_t index = 0; index < kSignals.size(); ++index) {
        struct sigaction noting {};
        noting.sa_handler = note;
        noting.sa_flags = static_cast<int>(SA_RESETHAND);
        sigaction(kSignals[index], nullptr, &earlier[index]);
        if (earlier[index].sa_handler != SIG_IGN) {
            sigaction(kSignals[index], &noting, nullptr);
        }
    }
}

Interruption::~Interruption() {
    for (std::size_t index = 0; index < kSignals.size(); ++index) {
        sigaction(kSignals[index], &earlier[index], nullptr);
    }
}

int Interruption::signalNumber() {
    return received;
}

} // namespace zqm::cli
