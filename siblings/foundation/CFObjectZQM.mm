// The classes of CoreFoundation objects. The libraries of the family tell them by the marker in the third
// word of their instance data.

#include "plugin/guard.h"
#include "plugin/instance_data.h"
#include "siblings/foundation/records.h"
#include "siblings/foundation/wrapper.h"

namespace {

struct CFObjectData {
    WrapperData wrapped;
    std::uint64_t reserved;
    std::uint64_t marker;
};
constexpr std::uint64_t kMarker = 0x52424346;

void startMarked(REALobject self) {
    startEmpty(self);
    instanceData<CFObjectData>(self).marker = kMarker;
}

constexpr ClassRecord cfClass(const char* name) {
    ClassRecord record = wrapperClass(name);
    record.dataSize = sizeof(CFObjectData);
    record.constructor = startMarked;
    return record;
}

constexpr ClassRecord subclass(const char* name) {
    ClassRecord record = cfClass(name);
    record.superName = "CFObjectZQM";
    // The host runs the constructor and destructor of the superclass too.
    record.constructor = [](REALobject) {};
    record.destructor = [](REALobject) {};
    return record;
}

constinit ClassRecord records[] = {
    cfClass("CFObjectZQM"),
    subclass("CFUUIDZQM"),
    subclass("CFBagZQM"),
};

} // namespace

std::span<ClassRecord> cfObjectClasses() {
    return records;
}
