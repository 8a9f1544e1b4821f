#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace zqm::cli {

// Tells whether memory can be read or written, without a crash where it can't: the kernel tries.
class MemoryProbe {
public:
    MemoryProbe(); // throws Failure
    MemoryProbe(const MemoryProbe&) = delete;
    MemoryProbe& operator=(const MemoryProbe&) = delete;
    ~MemoryProbe();

    // How many of the bytes can be read, from the first on.
    std::size_t readable(const void* memory, std::size_t size) const;
    // Whether all of them can be read and written.
    bool isWritable(void* memory, std::size_t size) const;
    // The text up to its NUL; none: that can't be read, or there is none in the first 64 KiB.
    std::optional<std::string> text(const char* text) const;

private:
    std::array<int, 2> pipe_{};
};

} // namespace zqm::cli
