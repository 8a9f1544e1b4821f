// Host strings in any encoding on their way into the plugin and back, at host versions where the way differs:
// the text stays the same, and nothing is left behind.

#include "plugin/host_strings.h"

#include "fuzz/byte_source.h"
#include "fuzz/check.h"
#include "fuzz/target.h"
#include "plugin/host_text.h"
#include "tests/plugin/plugin_host.h"

#include <iterator>
#include <optional>

namespace {

using namespace zqm;

std::uint32_t encodingFrom(fuzz::ByteSource& source) {
    constexpr std::uint32_t kCommon[]{host::encoding::kUtf8,     host::encoding::kUtf16,
                                      host::encoding::kUtf32,    host::encoding::kNone,
                                      host::encoding::kMacRoman, host::encoding::kWindowsLatin1,
                                      host::encoding::kAscii,    host::encoding::kIsoLatin1};
    const std::size_t choice = source.choice(std::size(kCommon) + 2);
    return choice < std::size(kCommon)    ? kCommon[choice]
           : choice == std::size(kCommon) ? source.number<std::uint16_t>()
                                          : source.number<std::uint32_t>();
}

// Nothing when the bytes are no text of the encoding.
std::optional<std::string> textOf(const host::String& string) {
    try {
        return string.text();
    } catch (const host::CallError&) {
        return std::nullopt;
    }
}

void checkThereAndBack(PluginHost& host, const host::String& string) {
    CFStringRef platform = RBString2CFString(string.handle());
    const auto text = textOf(string);
    fuzz::check(!text || platform != nullptr, "what is text for the host is text for the plugin");
    if (platform == nullptr) {
        return;
    }
    const host::String back = host->adopt(CFString2RBString(platform));
    CFRelease(platform);
    if (text) {
        const std::string expected = text->substr(0, text->find('\0'));
        // A host string without a place in UTF-8 comes back as nil.
        fuzz::check(back.isNull() || back.text() == expected, "text comes back as it was", back.text());
    }
}

void checkBuilt(PluginHost& host, const std::string& bytes, std::uint32_t encoding) {
    const host::String built =
        host->adopt(REALBuildUnicodeString(bytes.data(), static_cast<std::int64_t>(bytes.size()), encoding));
    fuzz::check(!bytes.empty() || built.isNull(), "of no bytes no string is made");
    const bool isWide = encoding == kCFStringEncodingUnicode || encoding == kCFStringEncodingUTF32;
    fuzz::check(isWide || bytes.empty() || built.bytes() == bytes, "bytes stay as they are");
    host->adopt(REALBuildUnicodeStringUTF16(bytes.data(), static_cast<std::int64_t>(bytes.size())));
}

void checkRead(host::String string, bool rawBytes) {
    const std::string bytes = string.bytes();
    rbText text(string.release(), rawBytes);
    const char* const utf8 = text.GetUTF8();
    fuzz::check(utf8 != nullptr && text.length() >= 0 && utf8[text.length()] == '\0', "a text ends in a NUL");
    fuzz::check(!rawBytes || std::string(utf8, static_cast<std::size_t>(text.length())) == bytes,
                "raw bytes are those of the string");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    constexpr double kVersions[]{2011.0, 2012.0, 2013.0, 2023.02};
    fuzz::ByteSource source(bytes, size);
    PluginHost host(kVersions[source.choice(std::size(kVersions))]);
    const std::uint32_t encoding = encodingFrom(source);
    const bool rawBytes = source.flag();
    const std::string given = source.rest();
    {
        const host::String string = host->string(given, encoding);
        checkThereAndBack(host, string);
        checkBuilt(host, given, encoding);
        checkRead(string, rawBytes);
    }
    for (const auto& report : host->reports()) {
        fuzz::check(false, "the host has nothing to report", report.text);
    }
    fuzz::check(host->takeRaised().empty(), "nothing is raised");
    fuzz::check(host->ledger() == host::Ledger{}, "nothing is left behind");
    return 0;
}
