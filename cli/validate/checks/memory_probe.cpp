#include "cli/validate/checks/memory_probe.h"

#include "cli/command_line/failure.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include <sys/syscall.h>
#include <unistd.h>

namespace zqm::cli {
namespace {

// Less than any pipe holds, and never across a border of pages.
constexpr std::size_t kPiece = 512;
constexpr std::size_t kLongestText = 65536;

std::size_t pieceAt(const char* memory, std::size_t size) {
    const std::size_t behind = reinterpret_cast<std::uintptr_t>(memory) % kPiece;
    return std::min(size, kPiece - behind);
}

// The functions of the C library of these names would be replaced by sanitizers, which end the process over
// memory that can't be read.
bool writes(int descriptor, const void* memory, std::size_t size) {
    return syscall(SYS_write, descriptor, memory, size) == static_cast<long>(size);
}

bool reads(int descriptor, void* memory, std::size_t size) {
    return syscall(SYS_read, descriptor, memory, size) == static_cast<long>(size);
}

} // namespace

MemoryProbe::MemoryProbe() {
    if (::pipe(pipe_.data()) != 0) {
        // The plugin, which may run here, can have taken them.
        throw Failure(std::string("can't make a pipe: ") + std::strerror(errno));
    }
}

MemoryProbe::~MemoryProbe() {
    close(pipe_[0]);
    close(pipe_[1]);
}

std::size_t MemoryProbe::readable(const void* memory, std::size_t size) const {
    const char* const begin = static_cast<const char*>(memory);
    std::array<char, kPiece> back;
    std::size_t count = 0;
    while (count < size) {
        const std::size_t piece = pieceAt(begin + count, size - count);
        if (!writes(pipe_[1], begin + count, piece) || !reads(pipe_[0], back.data(), piece)) {
            break;
        }
        count += piece;
    }
    return count;
}

bool MemoryProbe::isWritable(void* memory, std::size_t size) const {
    char* const begin = static_cast<char*>(memory);
    for (std::size_t count = 0; count < size;) {
        const std::size_t piece = pieceAt(begin + count, size - count);
        if (!writes(pipe_[1], begin + count, piece)) {
            return false;
        }
        if (!reads(pipe_[0], begin + count, piece)) {
            std::array<char, kPiece> rest;
            reads(pipe_[0], rest.data(), piece);
            return false;
        }
        count += piece;
    }
    return true;
}

std::optional<std::string> MemoryProbe::text(const char* text) const {
    std::string found;
    while (found.size() < kLongestText) {
        const std::size_t piece = pieceAt(text + found.size(), kPiece);
        if (readable(text + found.size(), piece) < piece) {
            return std::nullopt;
        }
        const std::size_t length = strnlen(text + found.size(), piece);
        found.append(text + found.size(), length);
        if (length < piece) {
            return found;
        }
    }
    return std::nullopt;
}

} // namespace zqm::cli
