#include "bridge/array_to_cocoa.h"

#include "bridge/dates.h"
#include "bridge/nesting.h"
#include "bridge/variant_to_cocoa.h"
#include "plugin/host_handles.h"
#include "plugin/platform_strings.h"
#include "plugin/plugin_main.h"

#import <Foundation/Foundation.h>
#include <algorithm>
#include <array>
#include <type_traits>

namespace {

// The elements themselves, contiguous, where the host shows them. Read anew for each element: the array may
// have been given other memory.
const void* directData(REALarray array) {
    if (rbversion_rbversion >= kHostVersion2016) {
        return nullptr;
    }
    return *reinterpret_cast<const void* const*>(reinterpret_cast<const char*>(array) +
                                                 kArrayDirectDataOffset);
}

auto& lockFor(REALstring) {
    return REALLockString;
}
auto& lockFor(REALobject) {
    return REALLockObject;
}
auto& lockFor(REALtext) {
    return REALLockText;
}

// Whether elements that were read without a call can be given the lock that a get function would give them.
template <typename Element>
bool canLock() {
    if constexpr (std::is_pointer_v<Element>) {
        return lockFor(Element{}).isAvailable();
    }
    return true;
}

// A handle comes with one lock that is the caller's.
template <typename Element>
Element elementAt(REALarray array, std::int64_t index,
                  ArrayEntryPoint<Element(REALarray, std::int64_t)>& getter) {
    const auto* elements = static_cast<const Element*>(directData(array));
    if (elements == nullptr || !canLock<Element>()) {
        return getter(array, index);
    }
    Element element = elements[index];
    if constexpr (std::is_pointer_v<Element>) {
        if (element != nullptr) {
            lockFor(element)(element);
        }
    }
    return element;
}

// The loop of every kind of array. The upper bound is asked for before each element, but decides only whether
// the element is still there.
template <auto& getter, auto convert>
NSMutableArray* convertedElements(REALarray array) {
    return convertedCollection([&]() -> NSMutableArray* {
        using Element = decltype(getter(array, 0));
        NSMutableArray* result = [NSMutableArray array];
        const std::int64_t upperBound = REALGetArrayUBound(array);
        for (std::int64_t i = 0; i <= upperBound; ++i) {
            const std::int64_t boundNow = REALGetArrayUBound(array);
            Element element{};
            if (boundNow < i) {
                RaiseOutOfBoundsException(i, boundNow + 1, "index", "");
            } else {
                element = elementAt(array, i, getter);
            }
            id converted = convert(element);
            if (isConversionAbandoned()) {
                break;
            }
            [result addObject:converted];
        }
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
