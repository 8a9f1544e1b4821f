// The kernel's Landlock: which files a process may open from now on. By raw system calls, since the C library
// has none for it, and with the rights of newer kernels than that whose headers are installed.

#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace zqm::engine {

// What one rule permits.
enum class FileAccess : std::uint8_t {
    // of a folder and of all beneath it
    List,
    ReadTree,
    // of a file
    Read,
    ReadAndWrite
};

struct FileRule {
    std::string path; // one that is absent permits nothing, as a file where a folder is meant, or the reverse
    FileAccess access;
};

// From now on this thread, and what it starts, opens no file, makes, renames and removes none but by these
// rules; where the kernel's version knows of them, no TCP connection, no abstract UNIX socket and no signal
// to another program either. What is open already stays as usable as it was. Answers the version;
// 0: the kernel has no Landlock, or keeps it from this program. Throws std::system_error when one that has it
// can't do it.
int restrictFiles(std::span<const FileRule> rules);

} // namespace zqm::engine
