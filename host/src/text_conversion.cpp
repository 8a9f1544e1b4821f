#include "text_conversion.h"

#include "zqmhost/string.h"

#include <memory>

namespace zqm::host {

namespace {

struct Released {
    void operator()(CFStringRef string) const { CFRelease(string); }
};
using OwnedCFString = std::unique_ptr<const __CFString, Released>;

constexpr std::uint8_t kLossByte = '?';

} // namespace

CFStringRef createCFString(std::string_view bytes, std::uint32_t encoding) {
    const std::uint32_t read = encoding == encoding::kNone ? encoding::kMacRoman : encoding;
    return CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(bytes.data()),
                                   static_cast<CFIndex>(bytes.size()), read, false);
}

std::optional<std::string> convertText(std::string_view bytes, std::uint32_t from, std::uint32_t to) {
    const OwnedCFString text(createCFString(bytes, from));
    if (text == nullptr) {
        return std::nullopt;
    }
    const CFRange all = CFRangeMake(0, CFStringGetLength(text.get()));
    CFIndex size = 0;
    if (CFStringGetBytes(text.get(), all, to, kLossByte, false, nullptr, 0, &size) != all.length) {
        return std::nullopt;
    }
    std::string result(static_cast<std::size_t>(size), '\0');
    CFStringGetBytes(text.get(), all, to, kLossByte, false, reinterpret_cast<UInt8*>(result.data()), size,
                     nullptr);
    return result;
}

} // namespace zqm::host
