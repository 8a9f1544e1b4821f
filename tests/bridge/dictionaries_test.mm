// Dictionaries of the host as the platform's, and the other way.

#include "bridge/dictionaries.h"

#include "plugin/platform_guard.h"
#include "tests/bridge/bridge_host.h"

#import <Foundation/Foundation.h>
#include <objc/runtime.h>

extern REALobject LastDictionary;

@interface KeylessDictionary : NSDictionary
@end

@implementation KeylessDictionary

- (NSUInteger)count {
    return 1;
}

- (id)objectForKey:(id)key {
    return nil;
}

- (NSArray*)allKeys {
    return nil;
}

@end

namespace {

using namespace zqm::bridge::test;
using testing::ElementsAre;
using testing::IsEmpty;
using zqm::host::Array;
using zqm::host::Dictionary;
using zqm::host::ElementType;
using zqm::host::Object;
using zqm::host::Value;

constexpr const char* kSetter = "Value(key As Variant, Assigns _value As Variant)";
constexpr const char* kGetter = "Value(key As Variant) As Variant";
constexpr const char* kKeyGetter = "Key(index As Integer) As Variant";

using Request = ObjectMethods::Request;

// What is asked of a Dictionary each time that the methods are looked up for it.
std::vector<Request> methodsOf(const std::vector<REALobject>& dictionaries) {
    std::vector<Request> requests;
    for (REALobject dictionary : dictionaries) {
        requests.push_back({dictionary, kSetter});
        requests.push_back({dictionary, kGetter});
        requests.push_back({dictionary, kKeyGetter});
    }
    return requests;
}

// Without the tests of which kind an object is.
std::vector<Request> askedOfDictionaries() {
    std::vector<Request> requests;
    for (const Request& request : ObjectMethods::asked()) {
        if (!request.declaration.starts_with("TrueItem")) {
            requests.push_back(request);
        }
    }
    return requests;
}

void expectEqual(id expected, id actual) {
    EXPECT_TRUE([expected isEqual:actual]) << [[actual description] UTF8String];
}

Dictionary adopted(PluginHost& host, REALobject dictionary) {
    return dictionary != nullptr ? Dictionary(host->adopt(dictionary)) : Dictionary();
}

// What happens to the two Variants of one pair, in order.
std::vector<std::string> steps;
REALobject keyVariant = nullptr;
REALobject valueVariant = nullptr;

void noteStep(REALobject variant, const char* step) {
    if (variant == keyVariant || variant == valueVariant) {
        steps.push_back(std::string(variant == keyVariant ? "key " : "value ") + step);
    }
}

void noteUnlocks() {
    PluginHost::replace(
        "REALUnlockObject", +[](REALobject object) {
            noteStep(object, "unlocked");
            hostFunction<void(REALobject)>("REALUnlockObject")(object);
        });
}

REALobject integerVariant(std::int64_t value) {
    return hostFunction<REALobject(std::int64_t)>("IntegerToVariant")(value);
}

// ---- to the platform

TEST(DictionaryToCocoa, HasEveryPair) {
    inBridge([](PluginHost& host) {
        Dictionary dictionary = host->dictionary();
        dictionary.setValue("text", "Gr\xC3\xBC\xC3\x9F");
        dictionary.setValue(2, 2.5);
        dictionary.setValue(true, host->memoryBlock("bytes"));
        NSDictionary* converted = NewNSDictionary(dictionary.handle());
        EXPECT_TRUE([converted isKindOfClass:[NSMutableDictionary class]]);
        EXPECT_EQ([converted retainCount], 1U);
        EXPECT_EQ([converted count], 3U);
        expectEqual(@"Gr\u00FC\u00DF", [converted objectForKey:@"text"]);
        expectEqual([NSNumber numberWithDouble:2.5], [converted objectForKey:[NSNumber numberWithLong:2]]);
        expectEqual([NSData dataWithBytes:"bytes" length:5],
                    [converted objectForKey:[NSNumber numberWithBool:YES]]);
        EXPECT_EQ(LastDictionary, nullptr);
    });
}

TEST(DictionaryToCocoa, OfNullIsNil) {
    inBridge([](PluginHost& host) {
        EXPECT_EQ(NewNSDictionary(nullptr), nil);
        EXPECT_THAT(host->entryPoints().asked(), IsEmpty());
    });
}

TEST(DictionaryToCocoa, AnEmptyOneIsImmutableAndAsksForNoMethod) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        const Dictionary dictionary = host->dictionary();
        NSDictionary* converted = NewNSDictionary(dictionary.handle());
        ASSERT_NE(converted, nil);
        EXPECT_EQ([converted count], 0U);
        EXPECT_FALSE([converted isKindOfClass:[NSMutableDictionary class]]);
        EXPECT_THAT(ObjectMethods::asked(), IsEmpty());
    });
}

TEST(DictionaryToCocoa, WithoutCountIsEmpty) {
    inBridge([](PluginHost& host) {
        Dictionary dictionary = host->dictionary();
        dictionary.setValue("key", "value");
        host->entryPoints().refuse("REALGetPropValueInteger");
        NSDictionary* converted = NewNSDictionary(dictionary.handle());
        ASSERT_NE(converted, nil);
        EXPECT_EQ([converted count], 0U);
    });
}

TEST(DictionaryToCocoa, ANilValueIsNSNull) {
    inBridge([](PluginHost& host) {
        Dictionary dictionary = host->dictionary();
        dictionary.setValue("nil", nullptr);
        dictionary.setValue("nothing", host->variant(0, nullptr));
        dictionary.setValue("empty block", host->memoryBlock(""));
        NSDictionary* converted = NewNSDictionary(dictionary.handle());
        EXPECT_EQ([converted count], 3U);
        for (id key : {@"nil", @"nothing", @"empty block"}) {
            EXPECT_EQ([converted objectForKey:key], [NSNull null]) << [key UTF8String];
        }
    });
}

TEST(DictionaryToCocoa, AKeyThatConvertsToNothingIsNSNull) {
    inBridge([](PluginHost& host) {
        Dictionary dictionary = host->dictionary();
        dictionary.setValue(host->memoryBlock(""), "value");
        expectEqual([NSDictionary dictionaryWithObject:@"value" forKey:[NSNull null]],
                    NewNSDictionary(dictionary.handle()));
    });
}

std::vector<std::int64_t> keysRead;
std::vector<REALobject> valuesRead;

// The value is asked for all the same.
TEST(DictionaryToCocoa, APairWithoutAKeyIsLeftOutThoughItsValueIsRead) {
    inBridge([](PluginHost& host) {
        ObjectMethods methods;
        methods.answer(kKeyGetter, reinterpret_cast<void*>(+[](REALobject, std::int64_t index) {
                           keysRead.push_back(index);
                           return REALobject(nullptr);
                       }));
        methods.answer(kGetter, reinterpret_cast<void*>(+[](REALobject, REALobject key) {
                           valuesRead.push_back(key);
                           return integerVariant(5);
                       }));
        Dictionary dictionary = host->dictionary();
        dictionary.setValue(1, 1);
        dictionary.setValue(2, 2);
        NSDictionary* converted = NewNSDictionary(dictionary.handle());
        EXPECT_TRUE([converted isKindOfClass:[NSMutableDictionary class]]);
        EXPECT_EQ([converted count], 0U);
        EXPECT_THAT(keysRead, ElementsAre(0, 1));
        EXPECT_THAT(valuesRead, ElementsAre(nullptr, nullptr));
    });
}

TEST(DictionaryToCocoa, OfAPairTheKeyComesFirst) {
    inBridge([](PluginHost& host) {
        ObjectMethods methods;
        methods.answer(kKeyGetter, reinterpret_cast<void*>(+[](REALobject, std::int64_t) {
                           keyVariant = integerVariant(1);
                           noteStep(keyVariant, "read");
                           return keyVariant;
                       }));
        methods.answer(kGetter, reinterpret_cast<void*>(+[](REALobject, REALobject) {
                           valueVariant = integerVariant(2);
                           noteStep(valueVariant, "read");
                           return valueVariant;
                       }));
        PluginHost::replace(
            "VariantToInt64", +[](REALobject variant) {
                noteStep(variant, "converted");
                return hostFunction<std::int64_t(REALobject)>("VariantToInt64")(variant);
            });
        noteUnlocks();
        Dictionary dictionary = host->dictionary();
        dictionary.setValue(1, 2);
        EXPECT_EQ([NewNSDictionary(dictionary.handle()) count], 1U);
        EXPECT_THAT(steps, ElementsAre("key read", "value read", "key converted", "value converted",
                                       "key unlocked", "value unlocked"));
    });
}

id noRoom(id /*self*/, SEL /*command*/, NSUInteger /*capacity*/) {
    return nil;
}

TEST(DictionaryToCocoa, WithoutRoomIsNilAndAsksForNoMethod) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        Dictionary dictionary = host->dictionary();
        dictionary.setValue(1, 1);
        const Method create =
            class_getClassMethod([NSMutableDictionary class], @selector(dictionaryWithCapacity:));
        const IMP original = method_setImplementation(create, reinterpret_cast<IMP>(noRoom));
        EXPECT_EQ(NewNSDictionary(dictionary.handle()), nil);
        method_setImplementation(create, original);
        EXPECT_THAT(ObjectMethods::asked(), IsEmpty());
    });
}

TEST(DictionaryToCocoa, WithoutKeyMethodHasNoPairs) {
    inBridge([](PluginHost& host) {
        ObjectMethods methods;
        methods.answer(kKeyGetter, nullptr);
        methods.answer(kGetter, nullptr);
        Dictionary dictionary = host->dictionary();
        dictionary.setValue(1, 1);
        EXPECT_EQ([NewNSDictionary(dictionary.handle()) count], 0U);
    });
}

TEST(DictionaryToCocoa, WithoutValueMethodHasNulls) {
    inBridge([](PluginHost& host) {
        ObjectMethods methods;
        methods.answer(kGetter, nullptr);
        Dictionary dictionary = host->dictionary();
        dictionary.setValue("one", 1);
        expectEqual([NSDictionary dictionaryWithObject:[NSNull null] forKey:@"one"],
                    NewNSDictionary(dictionary.handle()));
    });
}

TEST(DictionaryToCocoa, WithoutAnyMethodIsEmpty) {
    inBridge([](PluginHost& host) {
        host->entryPoints().refuse("REALLoadObjectMethod");
        Dictionary dictionary = host->dictionary();
        dictionary.setValue("one", 1);
        EXPECT_EQ([NewNSDictionary(dictionary.handle()) count], 0U);
    });
}

TEST(DictionaryToCocoa, LooksItsMethodsUpOnceAConversion) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        Dictionary dictionary = host->dictionary();
        for (int i = 0; i < 5; ++i) {
            dictionary.setValue(i, i);
        }
        NewNSDictionary(dictionary.handle());
        EXPECT_EQ(askedOfDictionaries(), methodsOf({dictionary.handle()}));
        NewNSDictionary(dictionary.handle());
        EXPECT_EQ(askedOfDictionaries(), methodsOf({dictionary.handle(), dictionary.handle()}));
    });
}

TEST(DictionaryToCocoa, LooksItsMethodsUpAgainAfterAnotherInIt) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        Dictionary inner = host->dictionary();
        inner.setValue("x", 1);
        inner.setValue("y", 2);
        Dictionary outer = host->dictionary();
        outer.setValue("a", inner);
        outer.setValue("b", 3);
        outer.setValue("c", host->dictionary()); // empty: leaves the methods
        outer.setValue("d", 4);
        NSDictionary* converted = NewNSDictionary(outer.handle());
        NSDictionary* expectedInner =
            [NSDictionary dictionaryWithObjectsAndKeys:[NSNumber numberWithLong:1], @"x",
                                                       [NSNumber numberWithLong:2], @"y", nil];
        expectEqual([NSDictionary dictionaryWithObjectsAndKeys:expectedInner, @"a",
                                                               [NSNumber numberWithLong:3], @"b",
                                                               [NSDictionary dictionary], @"c",
                                                               [NSNumber numberWithLong:4], @"d", nil],
                    converted);
        EXPECT_EQ(askedOfDictionaries(), methodsOf({outer.handle(), inner.handle(), outer.handle()}));
    });
}

REALobject another = nullptr;

// The host's own method may call the plugin, between the key and its value too.
TEST(DictionaryToCocoa, LooksItsMethodsUpAgainWhenTheHostHadAnotherConverted) {
    inBridge([](PluginHost& host) {
        ObjectMethods methods;
        methods.answer(kKeyGetter, reinterpret_cast<void*>(+[](REALobject, std::int64_t index) {
                           if (REALobject dictionary = std::exchange(another, nullptr)) {
                               EXPECT_EQ([NewNSDictionary(dictionary) count], 1U);
                           }
                           return integerVariant(index);
                       }));
        Dictionary inner = host->dictionary();
        inner.setValue(0, "inner");
        Dictionary outer = host->dictionary();
        outer.setValue(0, "outer");
        another = inner.handle();
        expectEqual([NSDictionary dictionaryWithObject:@"outer" forKey:[NSNumber numberWithLong:0]],
                    NewNSDictionary(outer.handle()));
        EXPECT_EQ(askedOfDictionaries(), methodsOf({outer.handle(), inner.handle(), outer.handle()}));
    });
}

TEST(DictionaryToCocoa, ADictionaryAsKeyIsConvertedBeforeItsValue) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        Dictionary key = host->dictionary();
        key.setValue("k", 1);
        Dictionary value = host->dictionary();
        value.setValue("v", 2);
        Dictionary outer = host->dictionary();
        outer.setValue(key, value);
        NSDictionary* converted = NewNSDictionary(outer.handle());
        NSDictionary* one = [NSDictionary dictionaryWithObject:[NSNumber numberWithLong:1] forKey:@"k"];
        NSDictionary* two = [NSDictionary dictionaryWithObject:[NSNumber numberWithLong:2] forKey:@"v"];
        expectEqual([NSDictionary dictionaryWithObject:two forKey:one], converted);
        EXPECT_EQ(askedOfDictionaries(), methodsOf({outer.handle(), key.handle(), value.handle()}));
    });
}

TEST(DictionaryToCocoa, AnArrayMayBeAKey) {
    inBridge([](PluginHost& host) {
        Dictionary dictionary = host->dictionary();
        dictionary.setValue(host->array(ElementType::Integer, {1, 2}), "value");
        NSArray* key =
            [NSArray arrayWithObjects:[NSNumber numberWithLong:1], [NSNumber numberWithLong:2], nil];
        expectEqual([NSDictionary dictionaryWithObject:@"value" forKey:key],
                    NewNSDictionary(dictionary.handle()));
    });
}

// The platform's exception passes; the locks are back and the methods are looked up afresh afterwards.
TEST(DictionaryToCocoa, AnArrayWithANullElementEndsTheConversion) {
    for (const bool asKey : {false, true}) {
        inBridge([asKey](PluginHost& host) {
            Array array = host->array(ElementType::String, {"one"});
            array.resize(2);
            Dictionary inner = host->dictionary();
            inner.setValue(asKey ? Value(array) : Value("key"), asKey ? Value("value") : Value(array));
            Dictionary outer = host->dictionary();
            outer.setValue("fine", 1);
            outer.setValue("inner", inner);
            NSException* exception = runUnderPlatformGuard([&] { NewNSDictionary(outer.handle()); });
            EXPECT_STREQ([[exception name] UTF8String], "NSInvalidArgumentException");
            EXPECT_EQ(LastDictionary, nullptr);
        });
    }
}

TEST(DictionaryToCocoa, ThatShrinksRaisesTheHostsErrorsAndLeavesPairsOut) {
    inBridge([](PluginHost& host) {
        Dictionary dictionary = host->dictionary();
        dictionary.setValue("one", 1);
        dictionary.setValue("two", 2);
        dictionary.before(zqm::host::DictionaryCall::Key, 2, [&] { dictionary.remove("two"); });
        NSDictionary* converted = nil;
        const auto raised = raisedBy(host, [&] { converted = NewNSDictionary(dictionary.handle()); });
        expectEqual([NSDictionary dictionaryWithObject:[NSNumber numberWithLong:1] forKey:@"one"], converted);
        EXPECT_FALSE(raised.empty());
        EXPECT_THAT(raised, testing::Each(testing::Not(testing::HasSubstr("nested"))));
    });
}

// ---- to the host

TEST(DictionaryToHost, HasEveryPair) {
    inBridge([](PluginHost& host) {
        const Dictionary dictionary = adopted(
            host, NSDictionaryRB([NSDictionary
                      dictionaryWithObjectsAndKeys:@"Gr\u00FC\u00DF", @"text", [NSNumber numberWithInt:7],
                                                   @"number", [NSNull null], @"nothing", nil]));
        EXPECT_EQ(dictionary.count(), 3U);
        EXPECT_EQ(dictionary.value("text").asText(), "Gr\xC3\xBC\xC3\x9F");
        EXPECT_EQ(dictionary.value("number").asInteger(), 7);
        EXPECT_TRUE(dictionary.value("nothing").isNull());
        EXPECT_EQ(LastDictionary, nullptr);
    });
}

TEST(DictionaryToHost, OfNilIsNull) {
    inBridge([](PluginHost& host) {
        EXPECT_EQ(NSDictionaryRB(nil), nullptr);
        EXPECT_THAT(host->entryPoints().asked(), IsEmpty());
    });
}

TEST(DictionaryToHost, AnEmptyOneIsEmpty) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        const Dictionary dictionary = adopted(host, NSDictionaryRB([NSDictionary dictionary]));
        ASSERT_FALSE(dictionary.isNull());
        EXPECT_EQ(dictionary.count(), 0U);
        EXPECT_THAT(ObjectMethods::asked(), IsEmpty());
    });
}

TEST(DictionaryToHost, OneThatTellsNoKeysIsEmpty) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        const Dictionary dictionary =
            adopted(host, NSDictionaryRB([[[KeylessDictionary alloc] init] autorelease]));
        ASSERT_FALSE(dictionary.isNull());
        EXPECT_EQ(dictionary.count(), 0U);
        EXPECT_THAT(ObjectMethods::asked(), IsEmpty());
    });
}

TEST(DictionaryToHost, OfAPairTheKeyComesFirst) {
    inBridge([](PluginHost& host) {
        PluginHost::replace(
            "StringToVariant", +[](REALstring text) {
                const std::string which = hostFunction<const char*(REALstring)>("StringGetCString")(text);
                REALobject& variant = which == "k" ? keyVariant : valueVariant;
                variant = hostFunction<REALobject(REALstring)>("StringToVariant")(text);
                noteStep(variant, "converted");
                return variant;
            });
        ObjectMethods methods;
        methods.answer(kSetter, reinterpret_cast<void*>(+[](REALobject, REALobject key, REALobject value) {
                           noteStep(key, "stored");
                           noteStep(value, "stored");
                       }));
        noteUnlocks();
        const Dictionary dictionary = adopted(host, NSDictionaryRB([NSDictionary dictionaryWithObject:@"v"
                                                                                               forKey:@"k"]));
        EXPECT_THAT(steps, ElementsAre("key converted", "value converted", "key stored", "value stored",
                                       "key unlocked", "value unlocked"));
    });
}

TEST(DictionaryToHost, WithoutTheClassIsNull) {
    inBridge([](PluginHost& host) {
        host->entryPoints().refuse("PluginNewInstance");
        EXPECT_EQ(NSDictionaryRB([NSDictionary dictionaryWithObject:@"v" forKey:@"k"]), nullptr);
    });
}

TEST(DictionaryToHost, WithoutSetterIsEmpty) {
    inBridge([](PluginHost& host) {
        ObjectMethods methods;
        methods.answer(kSetter, nullptr);
        const Dictionary dictionary = adopted(host, NSDictionaryRB([NSDictionary dictionaryWithObject:@"v"
                                                                                               forKey:@"k"]));
        ASSERT_FALSE(dictionary.isNull());
        EXPECT_EQ(dictionary.count(), 0U);
    });
}

TEST(DictionaryToHost, PairsComeInTheOrderOfTheKeys) {
    inBridge([](PluginHost& host) {
        NSMutableDictionary* pairs = [NSMutableDictionary dictionary];
        for (int i = 0; i < 50; ++i) {
            [pairs setObject:[NSNumber numberWithInt:i] forKey:[NSString stringWithFormat:@"key %d", i]];
        }
        const Dictionary dictionary = adopted(host, NSDictionaryRB(pairs));
        std::vector<std::string> expected;
        NSEnumerator* each = [[pairs allKeys] objectEnumerator];
        while (id key = [each nextObject]) {
            expected.emplace_back([key UTF8String]);
        }
        std::vector<std::string> keys;
        for (const Value& key : dictionary.keys()) {
            keys.push_back(key.asText());
        }
        EXPECT_EQ(keys, expected);
    });
}

TEST(DictionaryToHost, LooksItsMethodsUpOnceAConversion) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        const Dictionary dictionary = adopted(
            host, NSDictionaryRB([NSDictionary dictionaryWithObjectsAndKeys:@"1", @"a", @"2", @"b", nil]));
        EXPECT_EQ(askedOfDictionaries(), methodsOf({dictionary.handle()}));
    });
}

TEST(DictionaryToHost, OneInAnotherHasItsMethodsFirst) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        NSDictionary* inner = [NSDictionary dictionaryWithObject:@"value" forKey:@"key"];
        const Dictionary outer = adopted(host, NSDictionaryRB([NSDictionary dictionaryWithObject:inner
                                                                                          forKey:@"inner"]));
        const Dictionary converted(outer.value("inner").asObject());
        EXPECT_EQ(converted.value("key").asText(), "value");
        EXPECT_EQ(askedOfDictionaries(), methodsOf({converted.handle(), outer.handle()}));
    });
}

TEST(DictionaryToHost, ConvertsThereAndBack) {
    inBridge([](PluginHost& host) {
        NSDictionary* inner =
            [NSDictionary dictionaryWithObjectsAndKeys:@"v", @"k", [NSNull null], @"n", nil];
        NSArray* list = [NSArray arrayWithObjects:@"one", inner, nil];
        NSDictionary* outer =
            [NSDictionary dictionaryWithObjectsAndKeys:inner, @"inner", list, @"list",
                                                       [NSData dataWithBytes:"bytes" length:5], @"data", nil];
        const Dictionary dictionary = adopted(host, NSDictionaryRB(outer));
        expectEqual(outer, NewNSDictionary(dictionary.handle()));
    });
}

} // namespace
