// A process for a plugin that starts some. It is no copy of the host, which would take long where that is
// large, as with sanitizers.

#pragma once

#include <array>
#include <spawn.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

// Runs a command of the shell's; -1: there is no process for it.
inline pid_t spawn(const char* command) {
    std::array<char*, 4> arguments{const_cast<char*>("sh"), const_cast<char*>("-c"),
                                   const_cast<char*>(command), nullptr};
    pid_t process = -1;
    return posix_spawn(&process, "/bin/sh", nullptr, nullptr, arguments.data(), environ) == 0 ? process : -1;
}

} // namespace
