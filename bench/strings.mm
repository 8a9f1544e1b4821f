// What strings cost on their way between host and platform, beside the platform's own conversion of the same
// bytes, ICU's, and a copy of them.

#include "bench/support/runtime.h"
#include "plugin/autorelease_pool.h"
#include "plugin/host_handles.h"
#include "plugin/host_strings.h"

#include <array>
#include <benchmark/benchmark.h>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <unicode/ustring.h>
#include <vector>

namespace {

using zqm::bench::runtime;

struct Script {
    const char* name;
    std::string_view text; // repeated, and cut between characters
};

constexpr std::array kScripts = std::to_array<Script>({
    {"ascii", "The quick brown fox jumps over the lazy dog. "},
    {"latin", "Ça alors, où était-elle née ? Früh übt sich, wer später groß wird. "},
    {"cjk", "我能吞下玻璃而不伤身体。私はガラスを食べられます。"},
    {"emoji", "👍🎉😀🚀🐍👩‍🚀🇩🇪"},
});

constexpr std::array<std::int64_t, 7> kSizes{10, 100, 1'000, 10'000, 100'000, 1'000'000, 10'000'000};

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// Of at most so many bytes.
std::string textOf(const Script& script, std::size_t size) {
    std::string text;
    while (text.size() <= size) {
        text += script.text;
    }
    while (size > 0 && continuesCharacter(text[size])) {
        --size;
    }
    text.resize(size);
    return text;
}

NSString* newPlatformString(const std::string& text) {
    return [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:NSUTF8StringEncoding];
}

std::vector<UChar> unitsOf(const std::string& text) {
    std::vector<UChar> units(text.size());
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(units.data(), static_cast<int32_t>(units.size()), &length, text.data(),
                  static_cast<int32_t>(text.size()), &status);
    units.resize(static_cast<std::size_t>(length));
    return units;
}

void toPlatform(benchmark::State& state, const std::string& text) {
    const auto string = runtime().string(text);
    for (auto _ : state) {
        CFStringRef converted = RBString2CFString(string.handle());
        benchmark::DoNotOptimize(converted);
        CFRelease(converted);
    }
}

void toPlatformByGNUstep(benchmark::State& state, const std::string& text) {
    for (auto _ : state) {
        NSString* converted = newPlatformString(text);
        benchmark::DoNotOptimize(converted);
        [converted release];
    }
}

// What is asked of the host before any conversion.
void readOfHost(benchmark::State& state, const std::string& text) {
    const auto string = runtime().string(text);
    for (auto _ : state) {
        benchmark::DoNotOptimize(REALGetStringEncoding(string.handle()));
        benchmark::DoNotOptimize(REALGetStringContents(string.handle()));
    }
}

void toPlatformByICU(benchmark::State& state, const std::string& text) {
    for (auto _ : state) {
        const auto units = std::make_unique_for_overwrite<UChar[]>(text.size());
        UErrorCode status = U_ZERO_ERROR;
        u_strFromUTF8(units.get(), static_cast<int32_t>(text.size()), nullptr, text.data(),
                      static_cast<int32_t>(text.size()), &status);
        benchmark::DoNotOptimize(units.get());
    }
}

void toHost(benchmark::State& state, const std::string& text) {
    runtime();
    const AutoreleasePool outer;
    NSString* string = [newPlatformString(text) autorelease];
    for (auto _ : state) {
        const AutoreleasePool pool; // a conversion of long strings leaves what it needed meanwhile
        const OwnedString converted{CFString2RBString(reinterpret_cast<CFStringRef>(string))};
        benchmark::DoNotOptimize(converted.get());
    }
}

void toHostByGNUstep(benchmark::State& state, const std::string& text) {
    const AutoreleasePool outer;
    NSString* string = [newPlatformString(text) autorelease];
    for (auto _ : state) {
        const AutoreleasePool pool;
        benchmark::DoNotOptimize([string UTF8String]);
    }
}

// A string that the host makes and puts away, of bytes that need no conversion.
void madeByHost(benchmark::State& state, const std::string& text) {
    runtime();
    for (auto _ : state) {
        const OwnedString string{
            originalREALBuildString(text.data(), static_cast<std::int32_t>(text.size()))};
        REALSetStringEncoding(string.get(), kCFStringEncodingUTF8);
        benchmark::DoNotOptimize(string.get());
    }
}

void toHostByICU(benchmark::State& state, const std::string& text) {
    const std::vector<UChar> units = unitsOf(text);
    const std::size_t size = units.size() * 3;
    for (auto _ : state) {
        const auto bytes = std::make_unique_for_overwrite<char[]>(size);
        UErrorCode status = U_ZERO_ERROR;
        u_strToUTF8(bytes.get(), static_cast<int32_t>(size), nullptr, units.data(),
                    static_cast<int32_t>(units.size()), &status);
        benchmark::DoNotOptimize(bytes.get());
    }
}

void copied(benchmark::State& state, const std::string& text) {
    for (auto _ : state) {
        const auto bytes = std::make_unique_for_overwrite<char[]>(text.size());
        std::memcpy(bytes.get(), text.data(), text.size());
        benchmark::DoNotOptimize(bytes.get());
    }
}

struct Way {
    const char* name;
    void (*run)(benchmark::State& state, const std::string& text);
};

constexpr std::array kWays = std::to_array<Way>({
    {"to_platform/ours", toPlatform},
    {"to_platform/gnustep", toPlatformByGNUstep},
    {"to_platform/icu", toPlatformByICU},
    {"to_platform/memcpy", copied},
    {"to_platform/host", readOfHost},
    {"to_host/ours", toHost},
    {"to_host/gnustep", toHostByGNUstep},
    {"to_host/icu", toHostByICU},
    {"to_host/memcpy", copied},
    {"to_host/host", madeByHost},
});

void registerAll() {
    for (const Way& way : kWays) {
        for (const Script& script : kScripts) {
            for (const std::int64_t size : kSizes) {
                const std::string name =
                    "string/" + std::string(way.name) + "/" + script.name + "/" + std::to_string(size);
                benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
                    way.run(state, textOf(script, static_cast<std::size_t>(size)));
                });
            }
        }
    }
}

} // namespace

int main(int count, char** arguments) {
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments)) {
        return 2;
    }
    registerAll();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
