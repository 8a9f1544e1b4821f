#include "bridge/wrapper_objects.h"

#include "plugin/host_handles.h"
#include "plugin/instance_data.h"
#include "plugin/set_up.h"

#include <cstring>
#include <objc/runtime.h>

namespace {

// An instance made for a level that is not accepted stays the host's: what the class's constructor did with
// it is not known here.
template <typename Accepted>
REALobject wrapperFromClassChain(NSObject* object, Accepted&& accepted) {
    for (Class level = [object class]; level != Nil; level = class_getSuperclass(level)) {
        const WrapperClassName name{class_getName(level)};
        if (name.text() == nullptr) {
            continue;
        }
        REALobject wrapper = REALnewInstance(name.text());
        if (wrapper != nullptr && accepted()) {
            wrappedObject(wrapper) = [object retain];
            return wrapper;
        }
    }
    return nullptr;
}

} // namespace

WrapperClassName::WrapperClassName(const char* cocoaClass) {
    const std::size_t length = std::strlen(cocoaClass);
    if (length <= kLongestCocoaName) {
        std::memcpy(text_, cocoaClass, length);
        std::memcpy(text_ + length, kSuffix, sizeof kSuffix);
        length_ = length + sizeof kSuffix - 1;
    }
}

id& wrappedObject(REALobject wrapper) {
    return instanceData<id>(wrapper);
}

REALobject NewNSObjectZQM(NSObject* object, Class expectedClass) {
    if (object == nil || expectedClass == Nil) {
        return nullptr;
    }
    return wrapperFromClassChain(object, [&] { return [object isKindOfClass:expectedClass]; });
}

REALobject newWrapper(NSObject* object) {
    return wrapperFromClassChain(object, [] { return true; });
}

REALobject sharedWrapper(NSObject* object, const char* hostClass) {
    if (const auto known = lockedInstance(object)) {
        return *known;
    }
    REALobject wrapper = REALnewInstance(hostClass);
    if (wrapper != nullptr) {
        wrappedObject(wrapper) = [object retain];
        rememberInstance(object, wrapper);
    }
    return wrapper;
}
