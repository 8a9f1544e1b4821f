// A sibling library of the family: a host class for platform exceptions, and the class methods of NSException
// that the family shares.

#include "plugin/host_interface.h"

#import <AppKit/AppKit.h>
#include <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>
#include <bit>
#include <cstdint>
#import <objc/runtime.h>

#define SIBLING_EXPORT extern "C" __attribute__((visibility("default")))

SIBLING_EXPORT void REALPluginMain(REALresolver hostResolver);
SIBLING_EXPORT std::int64_t siblingPreparations();
SIBLING_EXPORT std::int64_t siblingPairs();
SIBLING_EXPORT void siblingMakeStopRaise();

namespace {

REALresolver resolver = nullptr;
std::int64_t preparations = 0;
CFMutableDictionaryRef pairs = nullptr;

template <typename Result, typename... Arguments>
Result host(const char* name, Arguments... arguments) {
    auto* function = reinterpret_cast<Result (*)(Arguments...)>(resolver(name));
    return function == nullptr ? Result() : function(arguments...);
}

ClassRecord exceptionRecord{.version = 13,
                            .name = "NSExceptionZQM",
                            .superName = "RuntimeException",
                            .dataSize = 16,
                            .constructor = nullptr,
                            .destructor = nullptr};

void raiseInstead(id, SEL) {
    [NSException raise:@"StopException" format:@"stop was refused"];
}

} // namespace

@interface NSException (Sibling)
+ (CFMutableDictionaryRef)GetInstancesDictionaryZQM;
+ (void)PrepareNSExceptionZQM;
+ (void*)NewNSExceptionZQM:(NSException*)exception;
@end

@implementation NSException (Sibling)

+ (CFMutableDictionaryRef)GetInstancesDictionaryZQM {
    if (pairs == nullptr) {
        pairs = CFDictionaryCreateMutable(kCFAllocatorDefault, 0, nullptr, nullptr);
    }
    return pairs;
}

+ (void)PrepareNSExceptionZQM {
    ++preparations;
}

+ (void*)NewNSExceptionZQM:(NSException*)exception {
    constexpr std::uint32_t kUtf8 = 0x08000100;
    const char* reason = [[exception reason] UTF8String];
    REALobject made = host<REALobject>("PluginNewInstance", "NSExceptionZQM");
    REALstring message = host<REALstring>("REALBuildStringWithEncoding", reason,
                                          static_cast<std::int32_t>([[exception reason] length]), kUtf8);
    host<bool>("REALSetPropValueString", made, "Message", message);
    host<void>("REALUnlockString", message);
    return made;
}

@end

void REALPluginMain(REALresolver hostResolver) {
    resolver = hostResolver;
    host<void>("PluginRegisterClass", static_cast<void*>(&exceptionRecord));
}

std::int64_t siblingPreparations() {
    return preparations;
}

std::int64_t siblingPairs() {
    return pairs == nullptr ? -1 : CFDictionaryGetCount(pairs);
}

void siblingMakeStopRaise() {
    Method method = class_getInstanceMethod([NSSpeechSynthesizer class], @selector(stopSpeaking));
    method_setImplementation(method, std::bit_cast<IMP>(&raiseInstead));
}
