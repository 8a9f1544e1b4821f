// Nothing is wrong with it, but that it starts a daemon when it is loaded, which nobody ends.
#include "counter_plugin.h"

#include <sys/wait.h>
#include <unistd.h>

namespace {
__attribute__((constructor)) void startDaemon() {
    const pid_t between = fork();
    if (between == 0) {
        setsid();
        if (fork() == 0) {
            sleep(60);
        }
        _exit(0);
    }
    waitpid(between, nullptr, 0);
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().start(resolver);
}
