#include "tests/bridge/counted_objects.h"

#include <bit>
#include <string>

namespace {

int alive = 0;

void deallocCounted(id self, SEL /*dealloc*/) {
    --alive;
    NSDeallocateObject(self);
}

} // namespace

Class cocoaClass(const char* name, Class super) {
    Class type = objc_getClass(name);
    if (type == Nil) {
        type = objc_allocateClassPair(super, name, 0);
        objc_registerClassPair(type);
    }
    return type;
}

id newCounted(Class type) {
    const std::string name = std::string("Counted") + class_getName(type);
    Class counted = objc_getClass(name.c_str());
    if (counted == Nil) {
        counted = objc_allocateClassPair(type, name.c_str(), 0);
        class_addMethod(counted, @selector(dealloc), std::bit_cast<IMP>(&deallocCounted), "v@:");
        objc_registerClassPair(counted);
    }
    ++alive;
    return NSAllocateObject(counted, 0, nullptr);
}

int countedAlive() {
    return alive;
}
