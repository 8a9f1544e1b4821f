// What it costs that a call goes through one of the library's layers: the wrapper of an entry point, the
// guard and the pool of a function that the host calls, the search for an object's class.

#include "bench/support/runtime.h"
#include "bridge/cocoa_to_variant.h"
#include "plugin/guard.h"
#include "plugin/host_handles.h"

#include <benchmark/benchmark.h>
#include <objc/runtime.h>

namespace {

using zqm::bench::runtime;

// The host's cheapest service that answers something, so that what lies before it counts most.
std::uint32_t encodingOfHost(REALstring string) {
    return string != nullptr ? 1 : 0;
}

void* resolveEncoding(const char*) {
    return reinterpret_cast<void*>(&encodingOfHost);
}

void callThroughWrapper(benchmark::State& state) {
    static constinit EntryPoint<std::uint32_t(REALstring)> wrapper{"REALGetStringEncoding"};
    const REALresolver before = gResolver;
    gResolver = resolveEncoding;
    wrapper.isAvailable();
    for (auto _ : state) {
        benchmark::DoNotOptimize(wrapper(nullptr));
    }
    gResolver = before;
}

void callThroughPointer(benchmark::State& state) {
    static std::uint32_t (*volatile pointer)(REALstring) =
        encodingOfHost; // read at each call, as the wrapper's is
    for (auto _ : state) {
        benchmark::DoNotOptimize(pointer(nullptr));
    }
}

[[gnu::noinline]] bool answerTrue() {
    bool answer = true;
    benchmark::DoNotOptimize(answer);
    return answer;
}

void guardedCall(benchmark::State& state) {
    runtime();
    for (auto _ : state) {
        benchmark::DoNotOptimize(guarded([] { return answerTrue(); }));
    }
}

void poolAlone(benchmark::State& state) {
    for (auto _ : state) {
        const AutoreleasePool pool;
        benchmark::DoNotOptimize(answerTrue());
    }
}

void emptyCall(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(answerTrue());
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
    static const Class type = classNamed("NSExpression");
    wrap(state, type);
}

BENCHMARK(callThroughWrapper)->Name("call/wrapper");
BENCHMARK(callThroughPointer)->Name("call/pointer");
BENCHMARK(guardedCall)->Name("guard/guarded");
BENCHMARK(poolAlone)->Name("guard/pool");
BENCHMARK(emptyCall)->Name("guard/empty");
BENCHMARK(firstClass)->Name("chain/first");
BENCHMARK(lastClass)->Name("chain/last");

} // namespace

BENCHMARK_MAIN();
