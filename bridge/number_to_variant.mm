#include "bridge/number_to_variant.h"

#include "plugin/entry_points.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

struct NumberEncoding {
    const char* type;
    REALobject (*newVariant)(NSNumber* number);
};

constexpr std::array kNumberEncodings = std::to_array<NumberEncoding>({
    {"c", [](NSNumber* number) { return REALNewVariantBoolean([number boolValue]); }},
    {"C", [](NSNumber* number) { return REALNewVariantInteger([number unsignedCharValue]); }},
    {"s", [](NSNumber* number) { return REALNewVariantInteger([number shortValue]); }},
    {"S", [](NSNumber* number) { return REALNewVariantInteger([number unsignedShortValue]); }},
    {"i", [](NSNumber* number) { return REALNewVariantInteger([number intValue]); }},
    {"I", [](NSNumber* number) { return REALNewVariantUInt32([number unsignedIntValue]); }},
    {"q", [](NSNumber* number) { return REALNewVariantInteger([number longValue]); }},
    // The host's unsigned Variant has 32 bits: the high ones are lost.
    {"Q",
     [](NSNumber* number) {
         return REALNewVariantUInt32(static_cast<std::uint32_t>([number unsignedLongValue]));
     }},
    {"f", [](NSNumber* number) { return REALNewVariantSingle([number floatValue]); }},
});

REALobject doubleVariant(NSNumber* number) {
    return REALNewVariantDouble([number doubleValue]);
}

bool isSame(NSObject* object, CFBooleanRef boolean) {
    return static_cast<const void*>(object) == static_cast<const void*>(boolean);
}

} // namespace

bool isBoolean(NSObject* object) {
    return isSame(object, kCFBooleanFalse) || isSame(object, kCFBooleanTrue);
}

REALobject booleanVariant(NSObject* boolean) {
    return REALNewVariantBoolean(isSame(boolean, kCFBooleanTrue));
}

REALobject numberVariant(NSNumber* number) {
    const char* type = [number objCType];
    const auto* encoding =
        std::find_if(kNumberEncodings.begin(), kNumberEncodings.end(),
                     [type](const NumberEncoding& one) { return std::strcmp(one.type, type) == 0; });
    return encoding != kNumberEncodings.end() ? encoding->newVariant(number) : doubleVariant(number);
}
