#pragma once

#include "plugin/host_interface.h"

#include <cstdint>
#include <memory>
#include <string>

namespace zqm::host {

class Core;

// CoreFoundation's numbers of the encodings met most.
namespace encoding {
inline constexpr std::uint32_t kMacRoman = 0x0000;
inline constexpr std::uint32_t kUtf16 = 0x0100; // in the machine's byte order
inline constexpr std::uint32_t kIsoLatin1 = 0x0201;
inline constexpr std::uint32_t kWindowsLatin1 = 0x0500;
inline constexpr std::uint32_t kAscii = 0x0600;
inline constexpr std::uint32_t kUtf8 = 0x08000100;
inline constexpr std::uint32_t kUtf32 = 0x0C000100;
inline constexpr std::uint32_t kNone = 0xFFFF; // a string without encoding
} // namespace encoding

// A host string, holding one lock of it: immutable bytes and the number of their encoding. A default one is
// nil, which counts as the empty text. Copying locks, destruction unlocks.
class String {
public:
    String() = default;
    String(std::shared_ptr<Core> core, REALstring locked) noexcept; // takes over the caller's lock
    // Another lock on the same one, or the lock of the other.
    String(const String& other);
    String(String&& other) noexcept;
    String& operator=(String other) noexcept;
    ~String();

    // Whether this is nil.
    bool isNull() const { return handle_ == nullptr; }
    REALstring handle() const { return handle_; } // borrowed
    REALstring release() noexcept;                // hands the lock to the caller; nil afterwards

    std::string bytes() const; // as they stand; empty for nil
    // The number of their encoding; that of UTF-8 for nil.
    std::uint32_t encoding() const;
    // In UTF-8; throws CallError when the bytes are no text of their encoding.
    std::string text() const;

private:
    std::shared_ptr<Core> core_;
    REALstring handle_ = nullptr;
};

} // namespace zqm::host
