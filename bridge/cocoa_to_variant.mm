#include "bridge/cocoa_to_variant.h"

#include "bridge/cf_wrapper.h"
#include "bridge/class_memo.h"
#include "bridge/cocoa_classes.h"
#include "bridge/data.h"
#include "bridge/dates.h"
#include "bridge/dictionaries.h"
#include "bridge/errors.h"
#include "bridge/file_urls.h"
#include "bridge/nesting.h"
#include "bridge/number_to_variant.h"
#include "bridge/platform_class.h"
#include "bridge/sibling_methods.h"
#include "bridge/value_to_host.h"
#include "bridge/wrapper_objects.h"
#include "plugin/host_handles.h"
#include "plugin/platform_strings.h"
#include "plugin/set_up.h"

#include <algorithm>
#include <array>
#include <optional>

namespace {

REALobject stringVariant(NSString* string) {
    const OwnedString text{hostString(string)};
    return REALNewVariantString(text.get());
}

REALobject urlVariant(NSURL* url) {
    REALobject item = NSURLRBFile(reinterpret_cast<CFURLRef>(url));
    return item != nullptr ? item : stringVariant([url absoluteString]);
}

// An array is a host object like any other.
OwnedObject newObjectArray() {
    return OwnedObject{reinterpret_cast<REALobject>(REALCreateArray(kArrayElementObject, -1))};
}

REALobject arrayVariant(NSArray* elements) {
    OwnedObject converted = convertedCollection([&] {
        OwnedObject result = newObjectArray();
        if (!result) {
            return result;
        }
        NSEnumerator* each = [elements objectEnumerator];
        std::int64_t index = 0;
        while (id element = [each nextObject]) {
            const OwnedObject value{NewVariantFromNSObject(element)};
            if (isConversionAbandoned()) {
                break;
            }
            if (!REALInsertArrayValueObject.isAvailable()) {
                return OwnedObject{}; // rather than an array that has lost its elements
            }
            REALInsertArrayValueObject(reinterpret_cast<REALarray>(result.get()), index, value.get());
            ++index;
        }
        return result;
    });
    return converted.release();
}

REALobject viewVariant(NSObject* view) {
    if ([NSValue respondsToSelector:@selector(NewQTKitNSViewZQM:)]) {
        if (REALobject known = [NSValue NewQTKitNSViewZQM:view]) {
            return known;
        }
    }
    return NewNSObjectZQM(view, platformClass("NSView"));
}

REALobject sharedWrapperOfClass(NSObject* object, const char* cocoaClass) {
    return sharedWrapper(object, WrapperClassName{cocoaClass}.text());
}

REALobject wrapperByRule(id object, const CocoaClass& cocoaClass) {
    switch (cocoaClass.rule) {
    case WrapRule::Direct:
        return sharedWrapperOfClass(object, cocoaClass.name);
    case WrapRule::Chain:
        return NewNSObjectZQM(object, platformClass(cocoaClass.name));
    case WrapRule::Error:
        return NewNSErrorZQM(object);
    case WrapRule::View:
        return viewVariant(object);
    }
    return nullptr;
}

struct OptionalClass {
    const char* name;
    Class type;
};

// Classes of frameworks that a process need not have loaded, looked up once. Null for an object of none.
const char* optionalClassOf(NSObject* object) {
    static const std::array classes = std::to_array<OptionalClass>({
        {"NSUserNotification", platformClass("NSUserNotification")},
        {"NSDraggingImageComponent", platformClass("NSDraggingImageComponent")},
        {"QuartzFilter", platformClass("QuartzFilter")},
        {"QCComposition", platformClass("QCComposition")},
        {"QCCompositionRepository", platformClass("QCCompositionRepository")},
    });
    for (const OptionalClass& optional : classes) {
        if (optional.type != Nil && [object isKindOfClass:optional.type]) {
            return optional.name;
        }
    }
    return nullptr;
}

struct FoundationClass {
    Class (*type)();
    REALobject (*convert)(id object);
};

// The first that an object is one of decides.
constexpr std::array kFoundationClasses = std::to_array<FoundationClass>({
    {[] { return [NSURL class]; }, [](id url) { return urlVariant(url); }},
    {[] { return [NSString class]; }, [](id string) { return stringVariant(string); }},
    {[] { return [NSData class]; }, [](id data) { return NSDataRB(data); }},
    {[] { return [NSArray class]; }, [](id array) { return arrayVariant(array); }},
    {[] { return [NSSet class]; }, [](id set) { return arrayVariant([set allObjects]); }},
    {[] { return [NSNumber class]; }, [](id number) { return numberVariant(number); }},
    {[] { return [NSDate class]; }, [](id date) { return newHostDate(date); }},
    {[] { return [NSDictionary class]; }, [](id dictionary) { return NSDictionaryRB(dictionary); }},
});

// Null for an object of none.
const FoundationClass* foundationClassOf(NSObject* object) {
    static ClassMemo<FoundationClass> known;
    return known.rowOf(object, [](NSObject* one) {
        const auto* row =
            std::find_if(kFoundationClasses.begin(), kFoundationClasses.end(),
                         [one](const FoundationClass& each) { return [one isKindOfClass:each.type()]; });
        return row != kFoundationClasses.end() ? row : nullptr;
    });
}

// What a Foundation class stands for.
std::optional<REALobject> variantOfFoundationObject(NSObject* object) {
    // These are numbers: none of the rows before that of numbers matches them.
    if (isBoolean(object)) {
        return booleanVariant(object);
    }
    if (const FoundationClass* foundationClass = foundationClassOf(object)) {
        return foundationClass->convert(object);
    }
    return std::nullopt;
}

std::optional<REALobject> variantOfWrappedClass(id object) {
    if (const CocoaClass* cocoaClass = cocoaClassOf(object)) {
        return wrapperByRule(object, *cocoaClass);
    }
    if (const char* optional = optionalClassOf(object)) {
        return sharedWrapperOfClass(object, optional);
    }
    const Class carrier = hostObjectCarrierClass();
    if (carrier != Nil && [object isKindOfClass:carrier]) {
        return [object unwrap];
    }
    if ([object isKindOfClass:[NSValue class]]) {
        return hostObjectOfValue(object);
    }
    return std::nullopt;
}

} // namespace

REALobject NewVariantFromNSObject(NSObject* object) {
    if (object == nil || object == [NSNull null]) {
        return nullptr;
    }
    if (const auto owner = lockedInstance(object)) {
        return *owner;
    }
    if (const auto variant = variantOfFoundationObject(object)) {
        return *variant;
    }
    if (const auto variant = variantOfWrappedClass(object)) {
        return *variant;
    }
    if (const auto variant = cfWrapper(object)) {
        return *variant;
    }
    return newWrapper(object);
}
