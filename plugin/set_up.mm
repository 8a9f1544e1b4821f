#include "plugin/set_up.h"

#include "plugin/host_errors.h"
#include "plugin/host_handles.h"
#include "plugin/sibling_methods.h"

CFMutableDictionaryRef instances = nullptr;

void CocoaInit() {
    // NOLINTNEXTLINE(readability-identifier-naming): the family's name for it
    static bool ExceptionsInitialized = false;

    if (instances == nullptr && [NSException respondsToSelector:@selector(GetInstancesDictionaryZQM)]) {
        instances = [NSException GetInstancesDictionaryZQM];
    }
    if (!ExceptionsInitialized && [NSException respondsToSelector:@selector(PrepareNSExceptionZQM)]) {
        [NSException PrepareNSExceptionZQM];
        ExceptionsInitialized = true;
    }
}

void rememberInstance(const void* platformObject, const void* hostObject) {
    if (instances != nullptr) {
        CFDictionarySetValue(instances, platformObject, hostObject);
    }
}

void forgetInstance(const void* platformObject) {
    if (instances != nullptr) {
        CFDictionaryRemoveValue(instances, platformObject);
    }
}

bool isAlreadyInitialized(const void* platformObject) {
    if (platformObject == nullptr) {
        return false;
    }
    RaiseException("UnsupportedOperationException",
                   "Constructor called too often. Object is already initialized.", 0, 0);
    return true;
}

std::optional<REALobject> lockedInstance(const void* platformObject) {
    if (instances == nullptr) {
        return std::nullopt;
    }
    auto object = static_cast<REALobject>(const_cast<void*>(CFDictionaryGetValue(instances, platformObject)));
    if (object == nullptr) {
        return std::nullopt;
    }
    return locked(object).release();
}
