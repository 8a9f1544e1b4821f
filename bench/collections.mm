// What arrays and dictionaries cost on their way between host and platform, beside as many elements that the
// other side makes of its own, nothing converted. The end of what was made is counted nowhere.

#include "bench/support/runtime.h"
#include "bench/support/stopwatch.h"
#include "bridge/cocoa_to_variant.h"
#include "bridge/dictionaries.h"
#include "bridge/variant_to_cocoa.h"
#include "plugin/autorelease_pool.h"
#include "plugin/host_handles.h"
#include "plugin/host_strings.h"

#include <array>
#include <benchmark/benchmark.h>
#include <cstddef>
#include <string>
#include <vector>

namespace {

using zqm::bench::runtime;
using zqm::bench::timed;
using Texts = std::vector<std::string>;

constexpr std::int64_t kFewest = 10;
constexpr std::int64_t kMost = 1'000'000;

Texts textsOf(const benchmark::State& state) {
    Texts texts;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        texts.push_back("key " + std::to_string(i));
    }
    return texts;
}

NSString* platformText(const std::string& text) {
    return [[[NSString alloc] initWithBytes:text.data() length:text.size()
                                   encoding:NSUTF8StringEncoding] autorelease];
}

OwnedString hostText(const std::string& text) {
    OwnedString string{originalREALBuildString(text.data(), static_cast<std::int32_t>(text.size()))};
    REALSetStringEncoding(string.get(), kCFStringEncodingUTF8);
    return string;
}

NSArray* platformArray(const Texts& texts) {
    NSMutableArray* array = [NSMutableArray array];
    for (const std::string& text : texts) {
        [array addObject:platformText(text)];
    }
    return array;
}

NSDictionary* platformDictionary(const Texts& texts) {
    NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
    for (std::size_t i = 0; i < texts.size(); ++i) {
        [dictionary setObject:[NSNumber numberWithLong:static_cast<long>(i)] forKey:platformText(texts[i])];
    }
    return dictionary;
}

// As a plugin makes them, by the host's own functions.
OwnedObject hostArray(const Texts& texts) {
    constexpr std::int32_t kObjects = 9;
    OwnedObject array{reinterpret_cast<REALobject>(REALCreateArray(kObjects, -1))};
    std::int64_t index = 0;
    for (const std::string& text : texts) {
        const OwnedObject value{REALNewVariantString(hostText(text).get())};
        REALInsertArrayValueObject(reinterpret_cast<REALarray>(array.get()), index, value.get());
        ++index;
    }
    return array;
}

OwnedObject hostDictionary(const Texts& texts) {
    OwnedObject dictionary{REALnewInstance("Dictionary")};
    const auto setValue = reinterpret_cast<void (*)(REALobject, REALobject, REALobject)>(
        REALLoadObjectMethod(dictionary.get(), "Value(key As Variant, Assigns _value As Variant)"));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const OwnedObject key{REALNewVariantString(hostText(texts[i]).get())};
        const OwnedObject value{REALNewVariantInteger(static_cast<std::int64_t>(i))};
        setValue(dictionary.get(), key.get(), value.get());
    }
    return dictionary;
}

template <typename Make>
void measure(benchmark::State& state, Make&& make) {
    for (auto _ : state) {
        const AutoreleasePool pool;
        timed(state, make);
    }
}

// As a host program makes them.
zqm::host::Array hostTexts(const benchmark::State& state) {
    auto array = runtime().array(zqm::host::ElementType::String);
    for (const std::string& text : textsOf(state)) {
        array.append(text);
    }
    return array;
}

void arrayToPlatform(benchmark::State& state) {
    const auto array = hostTexts(state);
    measure(state, [&] { return GetVariantAsNSObject(array.handle()); });
}

// What the host is asked for every element of one of its arrays in any case.
void arrayRead(benchmark::State& state) {
    const auto array = hostTexts(state);
    measure(state, [&] {
        std::int64_t bytes = 0;
        for (std::int64_t i = 0; i <= REALGetArrayUBound(array.array()); ++i) {
            const OwnedString string{REALGetArrayValueString(array.array(), i)};
            bytes += hostStringByteLength(string.get());
        }
        return bytes;
    });
}

void arrayOfPlatform(benchmark::State& state) {
    const Texts texts = textsOf(state);
    measure(state, [&] { return platformArray(texts); });
}

void dictionaryToPlatform(benchmark::State& state) {
    runtime();
    const OwnedObject dictionary = hostDictionary(textsOf(state));
    measure(state, [&] { return NewNSDictionary(dictionary.get()); });
}

// What it is asked for every entry of a dictionary: both, their types, and what is in them.
void dictionaryRead(benchmark::State& state) {
    runtime();
    const OwnedObject dictionary = hostDictionary(textsOf(state));
    const auto key = reinterpret_cast<REALobject (*)(REALobject, std::int64_t)>(
        REALLoadObjectMethod(dictionary.get(), "Key(index As Integer) As Variant"));
    const auto value = reinterpret_cast<REALobject (*)(REALobject, REALobject)>(
        REALLoadObjectMethod(dictionary.get(), "Value(key As Variant) As Variant"));
    const auto type = reinterpret_cast<std::int32_t (*)(REALobject)>(
        REALLoadFrameworkMethod(nullptr, "VarType(value As Variant) As Int32"));
    measure(state, [&] {
        std::int64_t sum = 0;
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            const OwnedObject oneKey{key(dictionary.get(), i)};
            const OwnedObject oneValue{value(dictionary.get(), oneKey.get())};
            const OwnedString text{GetVariantString(oneKey.get())};
            sum += type(oneKey.get()) + type(oneValue.get()) + GetVariantInt64(oneValue.get()) +
                   hostStringByteLength(text.get());
        }
        return sum;
    });
}

void dictionaryOfPlatform(benchmark::State& state) {
    const Texts texts = textsOf(state);
    measure(state, [&] { return platformDictionary(texts); });
}

void arrayToHost(benchmark::State& state) {
    runtime();
    const AutoreleasePool outer;
    NSArray* array = platformArray(textsOf(state));
    measure(state, [&] { return OwnedObject{NewVariantFromNSObject(array)}; });
}

void arrayOfHost(benchmark::State& state) {
    runtime();
    const Texts texts = textsOf(state);
    measure(state, [&] { return hostArray(texts); });
}

void dictionaryToHost(benchmark::State& state) {
    runtime();
    const AutoreleasePool outer;
    NSDictionary* dictionary = platformDictionary(textsOf(state));
    measure(state, [&] { return OwnedObject{NSDictionaryRB(dictionary)}; });
}

void dictionaryOfHost(benchmark::State& state) {
    runtime();
    const Texts texts = textsOf(state);
    measure(state, [&] { return hostDictionary(texts); });
}

#define COLLECTION_BENCHMARK(function, name)                                                                 \
    BENCHMARK(function)->Name(name)->RangeMultiplier(10)->Range(kFewest, kMost)->UseManualTime()
COLLECTION_BENCHMARK(arrayToPlatform, "array/to_platform/ours");
COLLECTION_BENCHMARK(arrayOfPlatform, "array/to_platform/floor");
COLLECTION_BENCHMARK(arrayRead, "array/to_platform/read");
COLLECTION_BENCHMARK(arrayToHost, "array/to_host/ours");
COLLECTION_BENCHMARK(arrayOfHost, "array/to_host/floor");
COLLECTION_BENCHMARK(dictionaryToPlatform, "dictionary/to_platform/ours");
COLLECTION_BENCHMARK(dictionaryOfPlatform, "dictionary/to_platform/floor");
COLLECTION_BENCHMARK(dictionaryRead, "dictionary/to_platform/read");
COLLECTION_BENCHMARK(dictionaryToHost, "dictionary/to_host/ours");
COLLECTION_BENCHMARK(dictionaryOfHost, "dictionary/to_host/floor");

} // namespace

BENCHMARK_MAIN();
