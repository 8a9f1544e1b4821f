// What the library does most often, each so many times, for a count of its instructions.
//
//   hot_paths               prints the names of the paths
//   hot_paths PATH ROUNDS   runs one of them, and a warm-up before that

#include "bench/support/runtime.h"
#include "bridge/cocoa_to_variant.h"
#include "bridge/variant_to_cocoa.h"
#include "plugin/autorelease_pool.h"
#include "plugin/host_handles.h"
#include "plugin/host_strings.h"
#include "speech/MyNSSpeechSynthesizer.h"

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <objc/runtime.h>
#include <stdexcept>
#include <string_view>

namespace {

using zqm::bench::runtime;
using zqm::host::Arguments;
using zqm::host::Object;
using zqm::host::String;

constexpr std::uint64_t kWarmUp = 200;
constexpr std::string_view kText = "Hello, lively world!";
constexpr std::int64_t kNumber = 1'234'567'890'123;

// What the optimizer must take for used, and for changed.
template <typename Value>
void use(Value& value) {
    asm volatile("" : "+r"(value) : : "memory");
}

// What is counted: scripts/counting/counts.py knows it by its name.
template <typename Round>
[[gnu::noinline]] void countedRounds(std::uint64_t rounds, const Round& round) {
    for (std::uint64_t done = 0; done < rounds; ++done) {
        round();
    }
}

template <typename Round>
void repeat(std::uint64_t rounds, const Round& round) {
    for (std::uint64_t done = 0; done < kWarmUp; ++done) {
        round();
    }
    countedRounds(rounds, round);
}

// The host's cheapest service that answers something: the path is what lies before it.
std::uint32_t encodingOfHost(REALstring string) {
    return string != nullptr ? 1 : 0;
}

void callEntryPoint(std::uint64_t rounds) {
    static constinit EntryPoint<std::uint32_t(REALstring)> wrapper{"REALGetStringEncoding"};
    gResolver = [](const char*) { return reinterpret_cast<void*>(&encodingOfHost); };
    repeat(rounds, [] {
        std::uint32_t encoding = wrapper(nullptr);
        use(encoding);
    });
}

void convertStringToPlatform(std::uint64_t rounds) {
    const String string = runtime().string(kText);
    repeat(rounds, [&] { CFRelease(RBString2CFString(string.handle())); });
}

void convertStringToHost(std::uint64_t rounds) {
    const String string = runtime().string(kText);
    CFStringRef text = RBString2CFString(string.handle());
    repeat(rounds, [&] { REALUnlockString(CFString2RBString(text)); });
    CFRelease(text);
}

void convertNumberToPlatform(std::uint64_t rounds) {
    const Object variant = runtime().variant(kNumber);
    repeat(rounds, [&] {
        const AutoreleasePool pool;
        id number = GetVariantAsNSObject(variant.handle());
        use(number);
    });
}

void convertNumberToHost(std::uint64_t rounds) {
    runtime();
    NSNumber* number = [[NSNumber alloc] initWithLongLong:kNumber];
    repeat(rounds, [&] {
        const AutoreleasePool pool;
        const OwnedObject variant{NewVariantFromNSObject(number)};
    });
    [number release];
}

// One that has neither voice nor engine, which valgrind can't start (it knows no pidfd_open): it raises
// events all the same.
MyNSSpeechSynthesizer* synthesizerOfEventsAlone(REALobject target) {
    MyNSSpeechSynthesizer* synthesizer = [MyNSSpeechSynthesizer alloc];
    const Ivar variable = class_getInstanceVariable([MyNSSpeechSynthesizer class], "target");
    *reinterpret_cast<REALobject*>(reinterpret_cast<char*>(synthesizer) + ivar_getOffset(variable)) = target;
    return synthesizer;
}

// As the platform delivers one: it asks whether there is a handler first.
void deliverEvent(std::uint64_t rounds) {
    runtime().start(REALPluginMain);
    Object object = runtime().create("NSSpeechSynthesizerZQM");
    std::int64_t heard = 0;
    object.on("willSpeakWord", [&](const Arguments& arguments) { heard += arguments[1].asInteger(); });
    MyNSSpeechSynthesizer* synthesizer = synthesizerOfEventsAlone(object.handle());
    NSString* text = [[NSString alloc] initWithUTF8String:kText.data()];
    repeat(rounds, [&] {
        const AutoreleasePool pool;
        if ([synthesizer respondsToSelector:@selector(speechSynthesizer:willSpeakWord:ofString:)]) {
            [synthesizer speechSynthesizer:synthesizer willSpeakWord:NSMakeRange(7, 6) ofString:text];
        }
    });
    [text release];
    [synthesizer release];
    if (heard == 0) {
        throw std::runtime_error("The handler of the event was not called.");
    }
}

struct Path {
    std::string_view name;
    void (*run)(std::uint64_t rounds);
};

constexpr Path kPaths[] = {
    {"entry_point_call", callEntryPoint},    {"string_to_platform", convertStringToPlatform},
    {"string_to_host", convertStringToHost}, {"number_to_platform", convertNumberToPlatform},
    {"number_to_host", convertNumberToHost}, {"event_delivery", deliverEvent},
};

int run(std::string_view name, std::string_view number) {
    std::uint64_t rounds = 0;
    const auto read = std::from_chars(number.data(), number.data() + number.size(), rounds);
    if (read.ec != std::errc() || read.ptr != number.data() + number.size() || rounds == 0) {
        std::fprintf(stderr, "hot_paths: ROUNDS is a whole number of at least 1.\n");
        return 1;
    }
    for (const Path& path : kPaths) {
        if (path.name == name) {
            const AutoreleasePool pool;
            path.run(rounds);
            return 0;
        }
    }
    std::fprintf(stderr, "hot_paths: there is no path of that name.\n");
    return 1;
}

} // namespace

int main(int count, char** arguments) {
    if (count == 1) {
        for (const Path& path : kPaths) {
            std::puts(path.name.data());
        }
        return 0;
    }
    if (count != 3) {
        std::fprintf(stderr, "usage: hot_paths [PATH ROUNDS]\n");
        return 1;
    }
    try {
        return run(arguments[1], arguments[2]);
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "hot_paths: %s\n", problem.what());
        return 1;
    }
}
