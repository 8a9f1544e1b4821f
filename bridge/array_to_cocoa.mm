#include "bridge/array_to_cocoa.h"

#include "bridge/dates.h"
#include "bridge/nesting.h"
#include "bridge/variant_to_cocoa.h"
#include "plugin/array_elements.h"
#include "plugin/host_handles.h"
#include "plugin/platform_strings.h"

#import <Foundation/Foundation.h>
#include <algorithm>
#include <array>

namespace {

template <auto& getter, auto convert>
NSMutableArray* convertedElements(REALarray array) {
    return convertedCollection([&]() -> NSMutableArray* {
        using Element = decltype(getter(array, 0));
        NSMutableArray* result = [NSMutableArray array];
        takeElements<getter>(array, REALGetArrayUBound(array), [&](Element element) {
            id converted = convert(element);
            if (isConversionAbandoned()) {
                return false;
            }
            [result addObject:converted];
            return true;
        });
        return result;
    });
}

id dateObject(REALobject element) {
    const OwnedObject date{element};
    return NewNSDate(date.get());
}

id stringElement(REALstring element) {
    const OwnedString string{element};
    return platformString(string.get());
}

id objectElement(REALobject element) {
    const OwnedObject object{element};
    return GetVariantAsNSObject(object.get());
}

// Where the host can't copy the text, a Variant of it can tell its string.
id textElement(REALtext element) {
    const OwnedText text{element};
    if (!text) {
        return nil;
    }
    if (CFStringRef copy = REALCopyTextCFString(text.get())) {
        return autoreleasedString(copy);
    }
    const OwnedObject variant{REALNewVariantText(text.get())};
    if (!variant) {
        return nil;
    }
    const OwnedString string{GetVariantString(variant.get())};
    return platformString(string.get());
}

struct ArrayType {
    std::int64_t code;
    NSMutableArray* (*convert)(REALarray array);
};

constexpr std::array kArrayTypes = std::to_array<ArrayType>({
    {4098, convertedElements<REALGetArrayValueInteger,
                             [](std::int64_t value) {
                                 return [NSNumber numberWithLong:static_cast<long>(value)];
                             }>},
    {4099, convertedElements<REALGetArrayValueInt64,
                             [](std::int64_t value) { return [NSNumber numberWithLongLong:value]; }>},
    {4100, convertedElements<REALGetArrayValueSingle,
                             [](float value) { return [NSNumber numberWithFloat:value]; }>},
    {4101, convertedElements<REALGetArrayValueDouble,
                             [](double value) { return [NSNumber numberWithDouble:value]; }>},
    {4103, convertedElements<REALGetArrayValueObject, dateObject>},
    {4104, convertedElements<REALGetArrayValueString, stringElement>},
    {4105, convertedElements<REALGetArrayValueObject, objectElement>},
    {4107,
     convertedElements<REALGetArrayValueBoolean, [](bool value) { return [NSNumber numberWithBool:value]; }>},
    {4133, convertedElements<REALGetArrayValueText, textElement>},
});

} // namespace

NSMutableArray* arrayOfElementType(REALarray array, std::int64_t typeCode) {
    const auto* type = std::find_if(kArrayTypes.begin(), kArrayTypes.end(),
                                    [typeCode](const ArrayType& one) { return one.code == typeCode; });
    return type != kArrayTypes.end() ? type->convert(array) : nil;
}
