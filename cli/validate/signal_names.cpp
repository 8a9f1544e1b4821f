#include "cli/validate/signal_names.h"

#include <csignal>

namespace zqm::cli {
namespace {

struct Named {
    int number;
    const char* name;
};

// Those that end a process.
constexpr Named kNames[] = {
    {SIGABRT, "SIGABRT"}, {SIGALRM, "SIGALRM"},     {SIGBUS, "SIGBUS"},   {SIGFPE, "SIGFPE"},
    {SIGHUP, "SIGHUP"},   {SIGILL, "SIGILL"},       {SIGINT, "SIGINT"},   {SIGKILL, "SIGKILL"},
    {SIGPIPE, "SIGPIPE"}, {SIGPROF, "SIGPROF"},     {SIGQUIT, "SIGQUIT"}, {SIGSEGV, "SIGSEGV"},
    {SIGSYS, "SIGSYS"},   {SIGTERM, "SIGTERM"},     {SIGTRAP, "SIGTRAP"}, {SIGUSR1, "SIGUSR1"},
    {SIGUSR2, "SIGUSR2"}, {SIGVTALRM, "SIGVTALRM"}, {SIGXCPU, "SIGXCPU"}, {SIGXFSZ, "SIGXFSZ"},
};

} // namespace

std::string nameOfSignal(int number) {
    for (const Named& named : kNames) {
        if (named.number == number) {
            return named.name;
        }
    }
    return "signal " + std::to_string(number);
}

} // namespace zqm::cli
