// What conversions between host values and Cocoa objects cost.

#include "bench/ratio_reporter.h"
#include "bridge/cocoa_to_variant.h"
#include "bridge/data.h"
#include "bridge/dictionaries.h"
#include "bridge/host_object_to_cocoa.h"
#include "plugin/autorelease_pool.h"
#include "plugin/host_handles.h"
#include "plugin/plugin_main.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <objc/runtime.h>
#include <optional>
#include <zqmhost/zqmhost.h>

namespace {

using zqm::host::Runtime;

constexpr std::size_t kLargeBlock = 100'000'000;

Runtime& runtime() {
    static const auto one = std::make_unique<Runtime>();
    gResolver = Runtime::resolver();
    rbversion_rbversion = zqm::host::kDefaultVersion;
    return *one;
}

zqm::host::Dictionary hostDictionary(std::int64_t count) {
    auto dictionary = runtime().dictionary();
    for (std::int64_t i = 0; i < count; ++i) {
        dictionary.setValue("key " + std::to_string(i), i);
    }
    return dictionary;
}

NSDictionary* cocoaDictionary(std::int64_t count) {
    NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
    for (std::int64_t i = 0; i < count; ++i) {
        [dictionary setObject:[NSNumber numberWithLong:static_cast<long>(i)]
                       forKey:[NSString stringWithFormat:@"key %ld", static_cast<long>(i)]];
    }
    return dictionary;
}

void dictionaryToCocoa(benchmark::State& state) {
    const auto dictionary = hostDictionary(state.range(0));
    for (auto _ : state) {
        auto pool = std::make_unique<AutoreleasePool>();
        benchmark::DoNotOptimize(NewNSDictionary(dictionary.handle()));
        state.PauseTiming(); // the end of what was made is not its conversion
        pool.reset();
        state.ResumeTiming();
    }
}

void dictionaryToHost(benchmark::State& state) {
    const AutoreleasePool outer;
    runtime();
    NSDictionary* dictionary = cocoaDictionary(state.range(0));
    for (auto _ : state) {
        const AutoreleasePool pool;
        std::optional<OwnedObject> converted;
        converted.emplace(NSDictionaryRB(dictionary));
        benchmark::DoNotOptimize(converted->get());
        state.PauseTiming(); // the end of what was made is not its conversion
        converted.reset();
        state.ResumeTiming();
    }
}

// The floors: as many such entries made by each side alone, texts of the keys included, nothing converted.
void dictionaryOfCocoa(benchmark::State& state) {
    for (auto _ : state) {
        auto pool = std::make_unique<AutoreleasePool>();
        benchmark::DoNotOptimize(cocoaDictionary(state.range(0)));
        state.PauseTiming();
        pool.reset();
        state.ResumeTiming();
    }
}

void dictionaryOfHost(benchmark::State& state) {
    for (auto _ : state) {
        std::optional<zqm::host::Dictionary> dictionary = hostDictionary(state.range(0));
        benchmark::DoNotOptimize(dictionary->handle());
        state.PauseTiming();
        dictionary.reset();
        state.ResumeTiming();
    }
}

// A class of that name with its host class, made here where the system has none.
Class classNamed(const char* name) {
    Class type = objc_getClass(name);
    if (type == Nil) {
        type = objc_allocateClassPair([NSObject class], name, 0);
        objc_registerClassPair(type);
    }
    runtime().defineClass({.name = std::string(name) + "ZQM", .dataSize = sizeof(id)});
    return type;
}

void wrap(benchmark::State& state, Class cocoaClass) {
    const AutoreleasePool outer;
    id object = [[[cocoaClass alloc] init] autorelease];
    for (auto _ : state) {
        const AutoreleasePool pool;
        const OwnedObject wrapper{NewVariantFromNSObject(object)};
        benchmark::DoNotOptimize(wrapper.get());
    }
}

void firstClass(benchmark::State& state) {
    static const Class type = classNamed("NSPathComponentCell");
    wrap(state, type);
}

void lastClass(benchmark::State& state) {
    static const Class type = classNamed("NSTextAttachment");
    wrap(state, type);
}

void copyOnce(benchmark::State& state) {
    const std::unique_ptr<char[]> source{new char[kLargeBlock]()};
    for (auto _ : state) {
        const std::unique_ptr<char[]> copy{new char[kLargeBlock]};
        std::memcpy(copy.get(), source.get(), kLargeBlock);
        benchmark::DoNotOptimize(copy.get());
    }
}

void blockToCocoa(benchmark::State& state) {
    auto block = runtime().memoryBlock(std::string(kLargeBlock, 'x'));
    for (auto _ : state) {
        const AutoreleasePool pool;
        benchmark::DoNotOptimize(GetObjectAsNSObject(block.handle()));
    }
}

void blockToHost(benchmark::State& state) {
    const AutoreleasePool outer;
    runtime();
    NSData* data = [NSMutableData dataWithLength:kLargeBlock];
    for (auto _ : state) {
        const AutoreleasePool pool;
        const OwnedObject block{NSDataRB(data)};
        benchmark::DoNotOptimize(block.get());
    }
}

constexpr int kRepetitions = 7;

#define ZQM_BENCHMARK(name) BENCHMARK(name)->Repetitions(kRepetitions)->Unit(benchmark::kMillisecond)
ZQM_BENCHMARK(dictionaryToCocoa)->Arg(10'000)->Arg(100'000);
ZQM_BENCHMARK(dictionaryToHost)->Arg(10'000)->Arg(100'000);
ZQM_BENCHMARK(dictionaryOfCocoa)->Arg(10'000)->Arg(100'000);
ZQM_BENCHMARK(dictionaryOfHost)->Arg(10'000)->Arg(100'000);
ZQM_BENCHMARK(firstClass)->Unit(benchmark::kMicrosecond);
ZQM_BENCHMARK(lastClass)->Unit(benchmark::kMicrosecond);
ZQM_BENCHMARK(copyOnce);
ZQM_BENCHMARK(blockToCocoa);
ZQM_BENCHMARK(blockToHost);

const std::vector<Ratio> kRatios = {
    {"a Dictionary of 100,000 entries to one of 10,000, to Cocoa", "dictionaryToCocoa/100000/repeats:7",
     "dictionaryToCocoa/10000/repeats:7", 11},
    {"the same to the host", "dictionaryToHost/100000/repeats:7", "dictionaryToHost/10000/repeats:7", 11},
    {"as many entries made by Cocoa alone, nothing converted", "dictionaryOfCocoa/100000/repeats:7",
     "dictionaryOfCocoa/10000/repeats:7", kNoLimit},
    {"the same by the host alone", "dictionaryOfHost/100000/repeats:7", "dictionaryOfHost/10000/repeats:7",
     kNoLimit},
    {"an object of the last known class to one of the first", "lastClass/repeats:7", "firstClass/repeats:7",
     1.5},
    {"100 MB of a MemoryBlock to a copy of as many bytes", "blockToCocoa/repeats:7", "copyOnce/repeats:7",
     1.5},
    {"the same to the host", "blockToHost/repeats:7", "copyOnce/repeats:7", 1.5},
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.print(kRatios) ? 0 : 1;
}
