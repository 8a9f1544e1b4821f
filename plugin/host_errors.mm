#include "plugin/host_errors.h"

#include "plugin/host_handles.h"
#include "plugin/host_strings.h"
#include "plugin/platform_guard.h"
#include "plugin/sibling_methods.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

namespace {

OwnedObject newExceptionObject(const char* className) {
    OwnedObject object{REALnewInstance(className)};
    return object ? std::move(object) : OwnedObject{REALnewInstance("RuntimeException")};
}

} // namespace

void RaiseException(const char* className, const char* message, std::uint32_t /*errorNumber*/,
                    std::int64_t /*extra*/) {
    OwnedString text;
    if (message != nullptr) {
        text = OwnedString{REALBuildUnicodeString(message, static_cast<std::int64_t>(std::strlen(message)),
                                                  kCFStringEncodingASCII)};
    }
    OwnedObject exception = newExceptionObject(className);
    if (!exception) {
        return;
    }
    REALSetPropValueString(exception.get(), "Message", text.get());
    REALSetPropValueInteger(exception.get(), "ErrorNumber", 0);
    REALRaiseException(exception.get());
}

void RaiseOutOfBoundsException(std::int64_t value, std::int64_t count, const char* parameterName,
                               const char* methodName) {
    constexpr std::size_t kRoomForWording = 200;
    const char* parameter = parameterName != nullptr ? parameterName : "?";
    const char* method = methodName != nullptr ? methodName : "";
    const std::size_t size = std::strlen(parameter) + std::strlen(method) + kRoomForWording;
    const std::unique_ptr<char[]> message{new (std::nothrow) char[size]()};
    if (message == nullptr) {
        RaiseException("OutOfBoundsException", "Out of Bounds", 0, 0);
        return;
    }
    std::snprintf(message.get(), size,
                  "Parameter %s %s%s is too %s. Range is %lld to %lld, but value is %lld.", parameter,
                  *method != '\0' ? "to method " : "", method, value < 0 ? "small" : "big", 0LL,
                  static_cast<long long>(count - 1), static_cast<long long>(value));
    RaiseException("OutOfBoundsException", message.get(), 0, 0);
}

void RaiseNSExceptionZQM(NSException* exception) {
    NSLog(@"A %@: %@, Info: %@\n", [exception name], [exception reason], [exception userInfo]);
    if (![NSException respondsToSelector:@selector(NewNSExceptionZQM:)]) {
        return;
    }
    const OwnedObject hostException{[NSException NewNSExceptionZQM:exception]};
    if (hostException) {
        REALRaiseException(hostException.get());
    }
}

bool raiseIfCaught(NSException* exception) {
    if (exception == nil) {
        return false;
    }
    runUnderPlatformGuard([&] { RaiseNSExceptionZQM(exception); });
    return true;
}
