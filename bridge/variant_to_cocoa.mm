#include "bridge/variant_to_cocoa.h"

#include "bridge/array_to_cocoa.h"
#include "bridge/dates.h"
#include "bridge/host_object_to_cocoa.h"
#include "plugin/host_handles.h"
#include "plugin/platform_strings.h"

#include <algorithm>
#include <array>

namespace {

std::int64_t typeCodeOf(REALobject variant) {
    using VarType = std::int32_t (*)(REALobject);
    static VarType varType = nullptr;
    if (varType == nullptr) {
        varType =
            reinterpret_cast<VarType>(REALLoadFrameworkMethod(nullptr, "VarType(value As Variant) As Int32"));
    }
    if (varType != nullptr) {
        return varType(variant);
    }
    std::int64_t type = 0;
    REALGetPropValueInteger(variant, "Type", &type);
    return type;
}

// A value comes from the reader, and from the property where the host has no such reader.
template <typename Result, typename Property>
Result valueOf(REALobject variant, EntryPoint<Result(REALobject)>& reader, Property& property,
               const char* name) {
    if (reader.isAvailable()) {
        return reader(variant);
    }
    Result value{};
    property(variant, name, &value);
    return value;
}

std::int64_t integerOf(REALobject variant) {
    return valueOf(variant, GetVariantInt64, REALGetPropValueInt64, "LongValue");
}

id longNumber(REALobject variant) {
    return [NSNumber numberWithLong:static_cast<long>(integerOf(variant))];
}

id longLongNumber(REALobject variant) {
    return [NSNumber numberWithLongLong:integerOf(variant)];
}

id floatNumber(REALobject variant) {
    return
        [NSNumber numberWithFloat:valueOf(variant, GetVariantSingle, REALGetPropValueSingle, "SingleValue")];
}

id doubleNumber(REALobject variant) {
    return
        [NSNumber numberWithDouble:valueOf(variant, GetVariantDouble, REALGetPropValueDouble, "DoubleValue")];
}

id boolNumber(REALobject variant) {
    return [NSNumber numberWithBool:integerOf(variant) != 0];
}

id date(REALobject variant) {
    REALobject value = nullptr;
    REALGetPropValueObject(variant, "DateValue", &value);
    const OwnedObject hostDate{value};
    return NewNSDate(hostDate.get());
}

// Never nil.
id string(REALobject variant) {
    const OwnedString text{valueOf(variant, GetVariantString, REALGetPropValueString, "StringValue")};
    NSString* converted = platformString(text.get());
    return converted != nil ? converted : @"";
}

struct VariantType {
    std::int64_t code;
    id (*convert)(REALobject variant);
};

constexpr std::array kVariantTypes = std::to_array<VariantType>({
    {2, longNumber},
    {3, longLongNumber},
    {4, floatNumber},
    {5, doubleNumber},
    {6, doubleNumber},
    {7, date},
    {8, string},
    {9, GetObjectAsNSObject},
    {11, boolNumber},
    {16, longNumber},
    {18, string},
    {19, string},
    {20, string},
    {21, string},
    {23, string},
    {37, string},
});

} // namespace

id GetVariantAsNSObject(REALobject variant) {
    if (variant == nullptr) {
        return nil;
    }
    const std::int64_t code = typeCodeOf(variant);
    const auto* type = std::find_if(kVariantTypes.begin(), kVariantTypes.end(),
                                    [code](const VariantType& one) { return one.code == code; });
    if (type != kVariantTypes.end()) {
        return type->convert(variant);
    }
    return arrayOfElementType(reinterpret_cast<REALarray>(variant), code);
}
