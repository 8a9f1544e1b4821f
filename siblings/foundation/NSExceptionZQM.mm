// The host class of platform exceptions, and what the family expects of NSException.

#include "plugin/guard.h"
#include "plugin/host_handles.h"
#include "plugin/instance_data.h"
#include "plugin/platform_strings.h"
#include "plugin/set_up.h"
#include "plugin/sibling_methods.h"
#include "siblings/foundation/records.h"
#include "siblings/foundation/wrapper.h"

#import <Foundation/Foundation.h>
#include <iterator>

namespace {

NSException* exceptionOf(REALobject self) {
    return static_cast<NSException*>(instanceData<WrapperData>(self).object);
}

REALstring name(REALobject self) {
    return guarded([&] { return hostString([exceptionOf(self) name]); });
}

REALstring reason(REALobject self) {
    return guarded([&] { return hostString([exceptionOf(self) reason]); });
}

constexpr MethodRecord kMethods[] = {
    {.function = name, .declaration = "Name as String"},
    {.function = reason, .declaration = "Reason as String"},
};

} // namespace

constinit ClassRecord NSExceptionClass = {
    .version = 13,
    .name = "NSExceptionZQM",
    .superName = "RuntimeException",
    .dataSize = sizeof(WrapperData),
    .constructor = startEmpty,
    .destructor = releaseWrapped,
    .methods = kMethods,
    .methodCount = std::size(kMethods),
};

@implementation NSException (ZQMSiblingMethods)

+ (CFMutableDictionaryRef)GetInstancesDictionaryZQM {
    static CFMutableDictionaryRef dictionary = CFDictionaryCreateMutable(nullptr, 0, nullptr, nullptr);
    return dictionary;
}

// Nothing has to be prepared: each exception object is made when it is asked for.
+ (void)PrepareNSExceptionZQM {
}

+ (REALobject)NewNSExceptionZQM:(NSException*)exception {
    OwnedObject made{REALnewInstance("NSExceptionZQM")};
    if (!made) {
        return nullptr;
    }
    instanceData<WrapperData>(made.get()).object = [exception retain];
    const OwnedString message{hostString([exception reason])};
    REALSetPropValueString(made.get(), "Message", message.get());
    return made.release();
}

@end
