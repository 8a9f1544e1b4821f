#include "CoreText/CoreText.h"
#import "platform/ZQMCFType.h"
#include "platform/autorelease_pool.h"
#include "platform/object_required.h"
#include "zqmplatform/type_instances.h"

#include <algorithm>
#include <objc/runtime.h>

namespace {

// The numbers, from 1 on.
enum Type : CFTypeID {
    NoType,
#define ZQM_BRIDGED_TYPE(kind, foundationClass, instance) kind##Type,
#define ZQM_OWN_TYPE(kind) kind##Type,
#include "platform/cf_types.def"
#undef ZQM_BRIDGED_TYPE
#undef ZQM_OWN_TYPE
};

constexpr CFTypeID kOwnTypes[] = {
#define ZQM_BRIDGED_TYPE(kind, foundationClass, instance)
#define ZQM_OWN_TYPE(kind) kind##Type,
#include "platform/cf_types.def"
#undef ZQM_BRIDGED_TYPE
#undef ZQM_OWN_TYPE
};

Type bridgedType(Class itsClass) {
#define ZQM_BRIDGED_TYPE(kind, foundationClass, instance)                                                    \
    if (itsClass == (foundationClass)) {                                                                     \
        return kind##Type;                                                                                   \
    }
#define ZQM_OWN_TYPE(kind)
#include "platform/cf_types.def"
#undef ZQM_BRIDGED_TYPE
#undef ZQM_OWN_TYPE
    return NoType;
}

id newInstance(CFTypeID type) {
    switch (type) {
#define ZQM_BRIDGED_TYPE(kind, foundationClass, instance)                                                    \
    case kind##Type:                                                                                         \
        return instance;
#define ZQM_OWN_TYPE(kind)
#include "platform/cf_types.def"
#undef ZQM_BRIDGED_TYPE
#undef ZQM_OWN_TYPE
    default:
        return std::ranges::count(kOwnTypes, type) > 0 ? [[ZQMCFType alloc] initWithType:type] : nil;
    }
}

} // namespace

#define ZQM_OWN_TYPE(kind)                                                                                   \
    CFTypeID kind##GetTypeID(void) {                                                                         \
        return kind##Type;                                                                                   \
    }
#define ZQM_BRIDGED_TYPE(kind, foundationClass, instance) ZQM_OWN_TYPE(kind)
#include "platform/cf_types.def"
#undef ZQM_BRIDGED_TYPE
#undef ZQM_OWN_TYPE

// Looks at classes and sends no message: the object may be of a class that answers none, or a class itself.
CFTypeID CFGetTypeID(CFTypeRef object) {
    zqm::platform::requireObject(object, "CFGetTypeID");
    for (Class itsClass = object_getClass((id)object); itsClass != Nil;
         itsClass = class_getSuperclass(itsClass)) {
        if (itsClass == [ZQMCFType class]) {
            return [(ZQMCFType*)object _cfTypeID];
        }
        if (const Type type = bridgedType(itsClass); type != NoType) {
            return type;
        }
    }
    return NoType;
}

CFTypeRef ZQMPlatformCreateInstanceOfType(CFTypeID type) {
    id instance = nil;
    zqm::platform::runInPool([&] { instance = newInstance(type); });
    return instance;
}
