// The host class of platform errors.

#include "plugin/guard.h"
#include "plugin/instance_data.h"
#include "plugin/platform_strings.h"
#include "siblings/foundation/records.h"
#include "siblings/foundation/wrapper.h"

#import <Foundation/Foundation.h>
#include <iterator>

namespace {

NSError* errorOf(REALobject self) {
    return static_cast<NSError*>(instanceData<WrapperData>(self).object);
}

std::int64_t code(REALobject self) {
    return guarded([&]() -> std::int64_t { return [errorOf(self) code]; });
}

REALstring domain(REALobject self) {
    return guarded([&] { return hostString([errorOf(self) domain]); });
}

REALstring localizedDescription(REALobject self) {
    return guarded([&] { return hostString([errorOf(self) localizedDescription]); });
}

constexpr MethodRecord kMethods[] = {
    {.function = DummyConstructor, .declaration = "Constructor", .flags = kUnconstructibleFlags},
    {.function = description, .declaration = "Description as String"},
    {.function = code, .declaration = "Code as Integer"},
    {.function = domain, .declaration = "Domain as String"},
    {.function = localizedDescription, .declaration = "LocalizedDescription as String"},
};

} // namespace

constinit ClassRecord NSErrorClass = {
    .version = 13,
    .name = "NSErrorZQM",
    .dataSize = sizeof(WrapperData),
    .constructor = startEmpty,
    .destructor = releaseWrapped,
    .methods = kMethods,
    .methodCount = std::size(kMethods),
};
