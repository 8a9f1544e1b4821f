#include "bridge/dictionaries.h"

#include "bridge/cocoa_to_variant.h"
#include "bridge/nesting.h"
#include "bridge/variant_to_cocoa.h"
#include "plugin/host_handles.h"

#import <Foundation/Foundation.h>

// NOLINTBEGIN(readability-identifier-naming): the family's names for them
REALobject LastDictionary = nullptr;
void (*LastDictionarySetter)(REALobject dictionary, REALobject key, REALobject value) = nullptr;
REALobject (*LastDictionaryGetter)(REALobject dictionary, REALobject key) = nullptr;
REALobject (*LastDictionaryKeyGetter)(REALobject dictionary, std::int64_t index) = nullptr;
// NOLINTEND(readability-identifier-naming)

namespace {

template <typename Function>
void load(Function& function, REALobject dictionary, const char* declaration) {
    function = reinterpret_cast<Function>(REALLoadObjectMethod(dictionary, declaration));
}

// The methods of this Dictionary. To be called before each use: converting a value may have converted another
// Dictionary.
void refreshMethods(REALobject dictionary) {
    if (LastDictionary == dictionary) {
        return;
    }
    LastDictionary = dictionary;
    load(LastDictionarySetter, dictionary, "Value(key As Variant, Assigns _value As Variant)");
    load(LastDictionaryGetter, dictionary, "Value(key As Variant) As Variant");
    load(LastDictionaryKeyGetter, dictionary, "Key(index As Integer) As Variant");
}

// The address of a Dictionary that has ended may be another's at the next conversion.
struct MethodsInUse {
    MethodsInUse() = default;
    MethodsInUse(const MethodsInUse&) = delete;
    MethodsInUse& operator=(const MethodsInUse&) = delete;
    ~MethodsInUse() { LastDictionary = nullptr; }
};

OwnedObject keyAt(REALobject dictionary, std::int64_t index) {
    refreshMethods(dictionary);
    return OwnedObject{LastDictionaryKeyGetter != nullptr ? LastDictionaryKeyGetter(dictionary, index)
                                                          : nullptr};
}

OwnedObject valueOf(REALobject dictionary, REALobject key) {
    refreshMethods(dictionary);
    return OwnedObject{LastDictionaryGetter != nullptr ? LastDictionaryGetter(dictionary, key) : nullptr};
}

id orNull(id object) {
    return object != nil ? object : [NSNull null];
}

} // namespace

REALobject NSDictionaryRB(NSDictionary* dictionary) {
    if (dictionary == nil) {
        return nullptr;
    }
    OwnedObject converted = convertedCollection([&] {
        OwnedObject result{REALnewInstance("Dictionary")};
        if (!result) {
            return result;
        }
        const MethodsInUse methods;
        NSArray* keys = [dictionary allKeys];
        const NSUInteger count = [keys count];
        for (NSUInteger i = 0; i < count; ++i) {
            id key = [keys objectAtIndex:i];
            id value = [dictionary objectForKey:key];
            OwnedObject hostValue; // given back after the key
            const OwnedObject hostKey{NewVariantFromNSObject(key)};
            hostValue = OwnedObject{NewVariantFromNSObject(value)};
            if (isConversionAbandoned()) {
                break;
            }
            refreshMethods(result.get());
            if (LastDictionarySetter != nullptr) {
                LastDictionarySetter(result.get(), hostKey.get(), hostValue.get());
            }
        }
        return result;
    });
    return converted.release();
}

NSDictionary* NewNSDictionary(REALobject dictionary) {
    if (dictionary == nullptr) {
        return nil;
    }
    return convertedCollection([&]() -> NSDictionary* {
        std::int64_t count = 0;
        REALGetPropValueInteger(dictionary, "Count", &count);
        if (count < 1) {
            return [NSDictionary dictionary];
        }
        NSMutableDictionary* result =
            [NSMutableDictionary dictionaryWithCapacity:static_cast<NSUInteger>(count)];
        if (result == nil) {
            return nil;
        }
        const MethodsInUse methods;
        for (std::int64_t i = 0; i < count; ++i) {
            OwnedObject value; // given back after the key
            const OwnedObject key = keyAt(dictionary, i);
            value = valueOf(dictionary, key.get());
            if (key) {
                id platformKey = orNull(GetVariantAsNSObject(key.get()));
                [result setObject:orNull(GetVariantAsNSObject(value.get())) forKey:platformKey];
            }
            if (isConversionAbandoned()) {
                break;
            }
        }
        return result;
    });
}
