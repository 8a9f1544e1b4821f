// A class record without fault, with its tables, for tests that put something wrong into it.

#pragma once

#include "zqmhost/zqmhost.h"

#include <cstdint>

namespace zqm::support {

struct SampleRecord {
    SampleRecord() = default;
    SampleRecord(const SampleRecord&) = delete;
    SampleRecord& operator=(const SampleRecord&) = delete;

    static void nothing(REALobject) {}
    static bool flag(REALobject, std::int64_t) { return true; }
    static bool sharedFlag() { return true; }

    PropertyRecord properties[2] = {{.name = "One", .type = "Boolean", .getter = flag},
                                    {.name = "Two", .type = "Boolean", .getter = flag}};
    MethodRecord methods[2] = {{.function = nothing, .declaration = "First"},
                               {.function = nothing, .declaration = "Second"}};
    EventRecord events[2] = {{.declaration = "began"}, {.declaration = "ended(well as Boolean)"}};
    ConstantRecord constants[2] = {{.declaration = "A=1"}, {.declaration = "B=2"}};
    MethodRecord sharedMethods[1] = {{.function = sharedFlag, .declaration = "Shared as Boolean"}};
    ClassRecord record{.version = 13,
                       .name = "Sample",
                       .dataSize = 16,
                       .constructor = nothing,
                       .destructor = nothing,
                       .properties = properties,
                       .propertyCount = 2,
                       .methods = methods,
                       .methodCount = 2,
                       .events = events,
                       .eventCount = 2,
                       .constants = constants,
                       .constantCount = 2,
                       .sharedMethods = sharedMethods,
                       .sharedMethodCount = 1};
};

} // namespace zqm::support
