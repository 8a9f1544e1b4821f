#include "bridge/value_to_host.h"

#include "bridge/host_value_objects.h"
#include "bridge/sibling_methods.h"
#include "plugin/entry_points.h"

#include <array>
#include <cstring>

namespace {

template <typename Value>
REALobject newValueObject(const char* hostClass, Value value) {
    REALobject object = REALnewInstance(hostClass);
    if (object != nullptr) {
        hostValue<Value>(object) = value;
    }
    return object;
}

// Null where no sibling has brought the method.
template <typename Send>
REALobject timeObject(NSValue* value, SEL method, Send&& send) {
    return [value respondsToSelector:method] ? send() : nullptr;
}

REALobject rectObject(NSValue* value) {
    return newValueObject("NSRectZQM", [value rectValue]);
}

REALobject sizeObject(NSValue* value) {
    return newValueObject("NSSizeZQM", [value sizeValue]);
}

REALobject rangeObject(NSValue* value) {
    return newValueObject("NSRangeZQM", [value rangeValue]);
}

REALobject pointObject(NSValue* value) {
    return newValueObject("NSPointZQM", [value pointValue]);
}

REALobject qtTimeObject(NSValue* value) {
    return timeObject(value, @selector(QTTimeValueZQM), [&] { return [value QTTimeValueZQM]; });
}

REALobject qtTimeRangeObject(NSValue* value) {
    return timeObject(value, @selector(QTTimeRangeValueZQM), [&] { return [value QTTimeRangeValueZQM]; });
}

REALobject cmTimeObject(NSValue* value) {
    return timeObject(value, @selector(CMTimeValueZQM), [&] { return [value CMTimeValueZQM]; });
}

REALobject cmTimeRangeObject(NSValue* value) {
    return timeObject(value, @selector(CMTimeRangeValueZQM), [&] { return [value CMTimeRangeValueZQM]; });
}

REALobject cmTimeMappingObject(NSValue* value) {
    return timeObject(value, @selector(CMTimeMappingValueZQM), [&] { return [value CMTimeMappingValueZQM]; });
}

struct ValueEncoding {
    const char* type;
    REALobject (*newObject)(NSValue* value);
};

// The time structs' own headers need not be there: what they are made of tells them apart.
constexpr std::array kValueEncodings = std::to_array<ValueEncoding>({
    {@encode(NSRect), rectObject},
    {@encode(NSSize), sizeObject},
    {@encode(NSRange), rangeObject},
    {@encode(NSPoint), pointObject},
    {"{?=qqq}", qtTimeObject},
    {"{?={?=qqq}{?=qqq}}", qtTimeRangeObject},
    {"{?=qiIq}", cmTimeObject},
    {"{?={?=qiIq}{?=qiIq}}", cmTimeRangeObject},
    {"{?={?={?=qiIq}{?=qiIq}}{?={?=qiIq}{?=qiIq}}}", cmTimeMappingObject},
});

} // namespace

REALobject hostObjectOfValue(NSValue* value) {
    const char* type = [value objCType];
    for (const ValueEncoding& encoding : kValueEncodings) {
        if (std::strcmp(encoding.type, type) == 0) {
            return encoding.newObject(value);
        }
    }
    return nullptr;
}
