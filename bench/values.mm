// What single values cost on their way between host and platform, beside the calls of both that no conversion
// can do without: what reads the value on one side, and what makes it on the other.

#include "bench/support/runtime.h"
#include "bridge/cocoa_to_variant.h"
#include "bridge/data.h"
#include "bridge/dates.h"
#include "bridge/file_urls.h"
#include "bridge/host_object_to_cocoa.h"
#include "bridge/variant_to_cocoa.h"
#include "plugin/autorelease_pool.h"
#include "plugin/host_handles.h"
#include "plugin/instance_data.h"
#include "plugin/memory_blocks.h"

#include <benchmark/benchmark.h>
#include <cstring>
#include <string>

namespace {

// A host with the family's library for Foundation's classes, which brings those of errors and wrappers.
zqm::host::Runtime& runtime() {
    static const bool isLoaded = [] {
        zqm::bench::runtime().load(ZQM_SIBLING);
        CocoaInit();
        return true;
    }();
    benchmark::DoNotOptimize(isLoaded);
    return zqm::bench::runtime();
}

constexpr std::int64_t kNumber = 123'456'789;
constexpr std::size_t kBytes = 1'000;
constexpr const char* kFile = "/usr/bin/env"; // some file that there is

// Runs it in a pool of its own each time, as a call of the host's has one. What it answers is a platform
// object.
template <typename Make>
void measure(benchmark::State& state, Make&& make) {
    for (auto _ : state) {
        const AutoreleasePool pool;
        benchmark::DoNotOptimize(make());
    }
}

// What it answers is a host object with one lock.
template <typename Make>
void measureHost(benchmark::State& state, Make&& make) {
    measure(state, [&] { return OwnedObject{make()}; });
}

void numberToPlatform(benchmark::State& state) {
    const auto variant = runtime().variant(kNumber);
    measure(state, [&] { return GetVariantAsNSObject(variant.handle()); });
}

void numberToPlatformAlone(benchmark::State& state) {
    const auto variant = runtime().variant(kNumber);
    measure(state, [&] { return [NSNumber numberWithLongLong:GetVariantInt64(variant.handle())]; });
}

void numberToHost(benchmark::State& state) {
    const AutoreleasePool outer;
    runtime();
    NSNumber* number = [NSNumber numberWithLongLong:kNumber];
    measureHost(state, [&] { return NewVariantFromNSObject(number); });
}

void numberToHostAlone(benchmark::State& state) {
    const AutoreleasePool outer;
    runtime();
    NSNumber* number = [NSNumber numberWithLongLong:kNumber];
    measureHost(state, [&] { return REALNewVariantInteger([number longLongValue]); });
}

void dateToPlatform(benchmark::State& state) {
    const auto date = runtime().date(2026, 11, 20, 9, 41, 30);
    measure(state, [&] { return NewNSDate(date.handle()); });
}

void dateToPlatformAlone(benchmark::State& state) {
    measure(state, [&] {
        return [NSCalendarDate dateWithYear:2026
                                      month:11
                                        day:20
                                       hour:9
                                     minute:41
                                     second:30
                                   timeZone:[NSTimeZone localTimeZone]];
    });
}

void dateToHost(benchmark::State& state) {
    const AutoreleasePool outer;
    runtime();
    NSDate* date = [NSDate dateWithTimeIntervalSinceReferenceDate:kNumber];
    measureHost(state, [&] { return newHostDate(date); });
}

void dateToHostAlone(benchmark::State& state) {
    const AutoreleasePool outer;
    runtime();
    NSDate* date = [NSDate dateWithTimeIntervalSinceReferenceDate:kNumber];
    measureHost(state, [&] {
        NSCalendarDate* fields = [[[NSCalendarDate alloc]
            initWithTimeIntervalSinceReferenceDate:[date timeIntervalSinceReferenceDate]] autorelease];
        benchmark::DoNotOptimize([fields yearOfCommonEra]);
        return REALnewInstance("Date");
    });
}

void dataToPlatform(benchmark::State& state) {
    const auto block = runtime().memoryBlock(std::string(kBytes, 'x'));
    measure(state, [&] { return GetObjectAsNSObject(block.handle()); });
}

void dataToPlatformAlone(benchmark::State& state) {
    const auto block = runtime().memoryBlock(std::string(kBytes, 'x'));
    measure(state, [&] {
        return [NSData dataWithBytes:MyREALMemoryBlockGetPtr(block.handle())
                              length:static_cast<NSUInteger>(memoryBlockSize(block.handle()))];
    });
}

void dataToHost(benchmark::State& state) {
    const AutoreleasePool outer;
    runtime();
    NSData* data = [NSMutableData dataWithLength:kBytes];
    measureHost(state, [&] { return NSDataRB(data); });
}

void dataToHostAlone(benchmark::State& state) {
    const AutoreleasePool outer;
    runtime();
    NSData* data = [NSMutableData dataWithLength:kBytes];
    measureHost(state, [&] {
        REALobject block = REALNewMemoryBlockOriginal(static_cast<std::int32_t>(kBytes));
        std::memcpy(REALMemoryBlockGetPtr(block), [data bytes], kBytes);
        return block;
    });
}

void urlToPlatform(benchmark::State& state) {
    const auto item = runtime().folderItem(kFile);
    measure(state, [&] { return NewNSURLfile(item.handle()); });
}

void urlToPlatformAlone(benchmark::State& state) {
    NSString* path = [NSString stringWithUTF8String:kFile];
    measure(state, [&] { return [NSURL fileURLWithPath:path]; });
}

void urlToHost(benchmark::State& state) {
    const AutoreleasePool outer;
    runtime();
    NSURL* url = [NSURL fileURLWithPath:[NSString stringWithUTF8String:kFile]];
    measureHost(state, [&] { return NSURLRBFile(reinterpret_cast<CFURLRef>(url)); });
}

// The one file is looked for in any case.
void urlToHostAlone(benchmark::State& state) {
    const AutoreleasePool outer;
    runtime();
    NSURL* url = [NSURL fileURLWithPath:[NSString stringWithUTF8String:kFile]];
    measureHost(state, [&] {
        FSRef file{};
        benchmark::DoNotOptimize(CFURLGetFSRef(reinterpret_cast<CFURLRef>(url), &file));
        return REALnewInstance("FolderItem");
    });
}

void errorToHost(benchmark::State& state) {
    const AutoreleasePool outer;
    runtime();
    NSError* error = [NSError errorWithDomain:NSPOSIXErrorDomain code:2 userInfo:nil];
    measureHost(state, [&] { return NewVariantFromNSObject(error); });
}

// As any object that the host wraps.
void errorToHostAlone(benchmark::State& state) {
    runtime();
    measureHost(state, [&] { return REALnewInstance("NSErrorZQM"); });
}

// A new wrapper each time, whose end is part of it.
void wrapperToHost(benchmark::State& state) {
    const AutoreleasePool outer;
    runtime();
    NSObject* object = [NSTimeZone timeZoneForSecondsFromGMT:3600];
    measureHost(state, [&] { return NewVariantFromNSObject(object); });
}

void wrapperToHostAlone(benchmark::State& state) {
    runtime();
    measureHost(state, [&] { return REALnewInstance("NSTimeZoneZQM"); });
}

void wrapperToPlatform(benchmark::State& state) {
    const AutoreleasePool outer;
    runtime();
    const OwnedObject wrapper{NewVariantFromNSObject([NSTimeZone timeZoneForSecondsFromGMT:3600])};
    measure(state, [&] { return GetObjectAsNSObject(wrapper.get()); });
}

// What the wrapper carries stands in its instance data.
void wrapperToPlatformAlone(benchmark::State& state) {
    const AutoreleasePool outer;
    runtime();
    const OwnedObject wrapper{NewVariantFromNSObject([NSTimeZone timeZoneForSecondsFromGMT:3600])};
    measure(state, [&] { return instanceData<id>(wrapper.get()); });
}

// An object that a host object owns comes back as that.
void identityHit(benchmark::State& state) {
    const AutoreleasePool outer;
    const auto owner = runtime().date(2026);
    NSObject* object = [[[NSObject alloc] init] autorelease];
    rememberInstance(object, owner.handle());
    measureHost(state, [&] { return NewVariantFromNSObject(object); });
    forgetInstance(object);
}

void identityHitAlone(benchmark::State& state) {
    const auto owner = runtime().date(2026);
    measureHost(state, [&] {
        REALLockObject(owner.handle());
        return owner.handle();
    });
}

#define VALUE_BENCHMARK(function, name)                                                                      \
    BENCHMARK(function)->Name("value/" name "/ours");                                                        \
    BENCHMARK(function##Alone)->Name("value/" name "/floor")
VALUE_BENCHMARK(numberToPlatform, "number_to_platform");
VALUE_BENCHMARK(numberToHost, "number_to_host");
VALUE_BENCHMARK(dateToPlatform, "date_to_platform");
VALUE_BENCHMARK(dateToHost, "date_to_host");
VALUE_BENCHMARK(dataToPlatform, "data_to_platform");
VALUE_BENCHMARK(dataToHost, "data_to_host");
VALUE_BENCHMARK(urlToPlatform, "url_to_platform");
VALUE_BENCHMARK(urlToHost, "url_to_host");
VALUE_BENCHMARK(errorToHost, "error_to_host");
VALUE_BENCHMARK(wrapperToHost, "wrapper_to_host");
VALUE_BENCHMARK(wrapperToPlatform, "wrapper_to_platform");
VALUE_BENCHMARK(identityHit, "identity");

} // namespace

BENCHMARK_MAIN();
