// Host strings in any encoding on their way into the plugin and back, at host versions where the way differs:
// the text stays the same, and nothing is left behind.

#include "plugin/host_strings.h"

#include "fuzz/byte_source.h"
#include "fuzz/check.h"
#include "fuzz/target.h"
#include "platform/surrogates.h"
#include "plugin/host_text.h"
#include "tests/plugin/plugin_host.h"

#include <iterator>
#include <optional>
#include <string>

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

bool hasLoneSurrogate(CFStringRef string) {
    std::u16string units(static_cast<std::size_t>(CFStringGetLength(string)), u'\0');
    CFStringGetCharacters(string, CFRangeMake(0, CFStringGetLength(string)),
                          reinterpret_cast<UniChar*>(units.data()));
    return platform::findLoneSurrogate(units) < units.size();
}

void checkThereAndBack(PluginHost& host, const host::String& string) {
    CFStringRef made = RBString2CFString(string.handle());
    const auto text = textOf(string);
    fuzz::check(!text || made != nullptr, "what is text for the host is text for the plugin");
    if (made == nullptr) {
        return;
    }
    const bool hasPlaceInUtf8 = !hasLoneSurrogate(made);
    const host::String back = host->adopt(CFString2RBString(made));
    CFRelease(made);
    if (!text) {
        return;
    }
    const std::string expected = text->substr(0, text->find('\0'));
    if (expected.empty() || !hasPlaceInUtf8) {
        fuzz::check(back.isNull(), "of no text, or none that UTF-8 can represent, no string is made",
                    back.text());
    } else {
        fuzz::check(!back.isNull() && back.text() == expected, "text comes back as it was", *text);
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
