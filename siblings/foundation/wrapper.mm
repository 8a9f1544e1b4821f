#include "siblings/foundation/wrapper.h"

#include "plugin/guard.h"
#include "plugin/instance_data.h"
#include "plugin/platform_strings.h"
#include "plugin/set_up.h"

#import <Foundation/Foundation.h>
#include <iterator>
#include <utility>

namespace {

void*& wrapped(REALobject self) {
    return instanceData<WrapperData>(self).object;
}

// One object can have several wrappers; at most one of them stands in the dictionary.
bool belongsTo(const void* object, REALobject self) {
    return instances != nullptr && CFDictionaryGetValue(instances, object) == self;
}

} // namespace

void startEmpty(REALobject self) {
    wrapped(self) = nullptr;
}

void releaseWrapped(REALobject self) {
    guarded([&] {
        CocoaInit();
        id object = static_cast<id>(std::exchange(wrapped(self), nullptr));
        if (belongsTo(object, self)) {
            releaseInstance(object);
        } else {
            [object release];
        }
    });
}

void DummyConstructor(REALobject /*self*/) {}

REALstring description(REALobject self) {
    return guarded([&] {
        id object = static_cast<id>(wrapped(self));
        return hostString([object description]);
    });
}

const MethodRecord kWrapperMethods[] = {
    {.function = DummyConstructor, .declaration = "Constructor", .flags = kUnconstructibleFlags},
    {.function = description, .declaration = "Description as String"},
};
static_assert(std::size(kWrapperMethods) == kWrapperMethodCount);
