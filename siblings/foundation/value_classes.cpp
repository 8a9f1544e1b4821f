// The classes that hold a small value in their instance data: the libraries of the family read and write it
// there, host code through the properties.

#include "plugin/instance_data.h"
#include "siblings/foundation/records.h"

#include <iterator>

namespace {

using Words = double[4];

// The property's parameter is the number of its word.
double number(REALobject self, std::int64_t word) {
    return instanceData<Words>(self)[word];
}

void setNumber(REALobject self, std::int64_t word, double value) {
    instanceData<Words>(self)[word] = value;
}

using Counts = std::int64_t[2];

std::int64_t count(REALobject self, std::int64_t word) {
    return instanceData<Counts>(self)[word];
}

void setCount(REALobject self, std::int64_t word, std::int64_t value) {
    instanceData<Counts>(self)[word] = value;
}

constexpr PropertyRecord numberProperty(const char* name, std::int64_t word) {
    return {.name = name, .type = "Double", .getter = number, .setter = setNumber, .parameter = word};
}

constexpr PropertyRecord countProperty(const char* name, std::int64_t word) {
    return {.name = name, .type = "Integer", .getter = count, .setter = setCount, .parameter = word};
}

constexpr PropertyRecord kPoint[] = {numberProperty("X", 0), numberProperty("Y", 1)};
constexpr PropertyRecord kSize[] = {numberProperty("Width", 0), numberProperty("Height", 1)};
constexpr PropertyRecord kRect[] = {numberProperty("X", 0), numberProperty("Y", 1),
                                    numberProperty("Width", 2), numberProperty("Height", 3)};
constexpr PropertyRecord kRange[] = {countProperty("Location", 0), countProperty("Length", 1)};

// The host hands the data over zeroed, and there is nothing to give up.
void nothingToDo(REALobject /*self*/) {}

template <std::size_t count>
constexpr ClassRecord valueClass(const char* name, const PropertyRecord (&properties)[count]) {
    return {
        .version = 13,
        .name = name,
        .dataSize = count * sizeof(double),
        .constructor = nothingToDo,
        .destructor = nothingToDo,
        .properties = properties,
        .propertyCount = count,
    };
}

constinit ClassRecord records[] = {
    valueClass("NSPointZQM", kPoint),
    valueClass("NSSizeZQM", kSize),
    valueClass("NSRectZQM", kRect),
    valueClass("NSRangeZQM", kRange),
};

} // namespace

std::span<ClassRecord> valueClasses() {
    return records;
}
