// Values within values: as deep as they may be, deeper, and without end.

#include "bridge/cocoa_to_variant.h"
#include "bridge/dictionaries.h"
#include "bridge/variant_to_cocoa.h"
#include "tests/bridge/bridge_host.h"

#import <Foundation/Foundation.h>
#include <array>
#include <exception>
#include <functional>

extern REALobject LastDictionary;

namespace {

using namespace zqm::bridge::test;
using testing::ElementsAre;
using testing::IsEmpty;
using zqm::host::Array;
using zqm::host::Dictionary;
using zqm::host::ElementType;
using zqm::host::Object;

constexpr int kDeepest = 500;
constexpr const char* kTooDeep = "RuntimeException: A value holds others nested deeper than 500 levels.";

Object nestedArrays(PluginHost& host, int levels) {
    Array array = host->array(ElementType::Object);
    for (int level = 1; level < levels; ++level) {
        array = host->array(ElementType::Object, {array});
    }
    return array;
}

Object nestedDictionaries(PluginHost& host, int levels) {
    Dictionary dictionary = host->dictionary();
    for (int level = 1; level < levels; ++level) {
        Dictionary outer = host->dictionary();
        outer.setValue("inner", dictionary);
        dictionary = outer;
    }
    return dictionary;
}

Object nestedKeys(PluginHost& host, int levels) {
    Dictionary dictionary = host->dictionary();
    for (int level = 1; level < levels; ++level) {
        Dictionary outer = host->dictionary();
        outer.setValue(dictionary, "inner");
        dictionary = outer;
    }
    return dictionary;
}

// In turns.
Object nestedBoth(PluginHost& host, int levels) {
    Object object = host->array(ElementType::Object);
    for (int level = 1; level < levels; ++level) {
        if (level % 2 == 0) {
            object = host->array(ElementType::Object, {object});
        } else {
            Dictionary outer = host->dictionary();
            outer.setValue("inner", object);
            object = outer;
        }
    }
    return object;
}

id nestedCocoa(int levels, id (*enclosing)(id inner)) {
    id object = [NSArray array];
    for (int level = 1; level < levels; ++level) {
        object = enclosing(object);
    }
    return object;
}

// The whole of it ends in this one exception.
void expectTooDeep(PluginHost& host, const Object& object) {
    id converted = @"not set";
    EXPECT_THAT(raisedBy(host, [&] { converted = GetVariantAsNSObject(object.handle()); }),
                ElementsAre(kTooDeep));
    EXPECT_EQ(converted, nil);
    EXPECT_EQ(LastDictionary, nullptr);
}

void expectTooDeep(PluginHost& host, id object) {
    REALobject converted = nullptr;
    EXPECT_THAT(raisedBy(host, [&] { converted = NewVariantFromNSObject(object); }), ElementsAre(kTooDeep));
    EXPECT_EQ(converted, nullptr);
    EXPECT_EQ(LastDictionary, nullptr);
}

// ---- to the platform

TEST(NestingToCocoa, TheDeepestIsConverted) {
    for (Object (*nested)(PluginHost&, int) : {nestedArrays, nestedDictionaries, nestedKeys, nestedBoth}) {
        inBridge([nested](PluginHost& host) {
            const Object object = nested(host, kDeepest);
            EXPECT_THAT(raisedBy(host, [&] { EXPECT_NE(GetVariantAsNSObject(object.handle()), nil); }),
                        IsEmpty());
        });
    }
}

TEST(NestingToCocoa, TheDeepestArrayHasAllItsLevels) {
    inBridge([](PluginHost& host) {
        const Object object = nestedArrays(host, kDeepest);
        id level = GetVariantAsNSObject(object.handle());
        int levels = 1;
        for (;[level count] == 1; level = [level objectAtIndex:0]) {
            ++levels;
        }
        EXPECT_EQ(levels, kDeepest);
    });
}

TEST(NestingToCocoa, OneLevelMoreIsAbandoned) {
    for (Object (*nested)(PluginHost&, int) : {nestedArrays, nestedDictionaries, nestedKeys, nestedBoth}) {
        inBridge([nested](PluginHost& host) {
            const Object object = nested(host, kDeepest + 1);
            expectTooDeep(host, object);
            expectTooDeep(host, object); // and the levels are counted from the start again
            const Object fine = nested(host, kDeepest);
            EXPECT_NE(GetVariantAsNSObject(fine.handle()), nil);
        });
    }
}

TEST(NestingToCocoa, ADictionaryThatHoldsItselfIsAbandoned) {
    inBridge([](PluginHost& host) {
        Dictionary dictionary = host->dictionary();
        dictionary.setValue("before", 1);
        dictionary.setValue("itself", dictionary);
        dictionary.setValue("after", 2);
        expectTooDeep(host, dictionary);
        dictionary.removeAll();
    });
}

TEST(NestingToCocoa, AnArrayThatHoldsItselfIsAbandoned) {
    for (const double version : {2015.4, zqm::host::kDefaultVersion}) {
        inBridge(version, [](PluginHost& host) {
            Array array = host->array(ElementType::Object, {1});
            array.append(array);
            array.append(2);
            expectTooDeep(host, array);
            array.resize(0);
        });
    }
}

TEST(NestingToCocoa, ACycleThroughBothIsAbandoned) {
    inBridge([](PluginHost& host) {
        Array array = host->array(ElementType::Object);
        Dictionary dictionary = host->dictionary();
        dictionary.setValue("array", array);
        array.append(dictionary);
        expectTooDeep(host, array);
        expectTooDeep(host, dictionary);
        array.resize(0);
    });
}

// Many values at one level are none the deeper.
TEST(NestingToCocoa, WidthIsNoDepth) {
    inBridge([](PluginHost& host) {
        Array array = host->array(ElementType::Object);
        for (int i = 0; i < 3 * kDeepest; ++i) {
            array.append(host->array(ElementType::Integer, {i}));
        }
        EXPECT_EQ([GetVariantAsNSObject(array.handle()) count], 3U * kDeepest);
    });
}

// ---- to the host

id inArray(id inner) {
    return [NSArray arrayWithObject:inner];
}
id inSet(id inner) {
    return [NSSet setWithObject:inner];
}
id inDictionary(id inner) {
    return [NSDictionary dictionaryWithObject:inner forKey:@"inner"];
}
id asKey(id inner) {
    return [NSDictionary dictionaryWithObject:@"inner" forKey:inner];
}
constexpr std::array kEnclosings{inArray, inSet, inDictionary, asKey};

TEST(NestingToHost, TheDeepestIsConverted) {
    for (id (*enclosing)(id) : kEnclosings) {
        inBridge([enclosing](PluginHost& host) {
            id object = nestedCocoa(kDeepest, enclosing);
            EXPECT_THAT(
                raisedBy(host, [&] { EXPECT_FALSE(host->adopt(NewVariantFromNSObject(object)).isNull()); }),
                IsEmpty());
        });
    }
}

TEST(NestingToHost, OneLevelMoreIsAbandoned) {
    for (id (*enclosing)(id) : kEnclosings) {
        inBridge([enclosing](PluginHost& host) {
            id object = nestedCocoa(kDeepest + 1, enclosing);
            expectTooDeep(host, object);
            expectTooDeep(host, object);
            EXPECT_FALSE(host->adopt(NewVariantFromNSObject(nestedCocoa(kDeepest, enclosing))).isNull());
        });
    }
}

// What the host would be given at the levels above is not whole.
TEST(NestingToHost, NothingIsStoredOnTheWayOut) {
    for (id (*enclosing)(id) : kEnclosings) {
        inBridge([enclosing](PluginHost& host) {
            const ObjectMethods methods;
            expectTooDeep(host, nestedCocoa(kDeepest + 1, enclosing));
            EXPECT_THAT(ObjectMethods::asked(), IsEmpty());
            EXPECT_EQ(host->entryPoints().lookups("PluginObjectArrayInsertProc"), 0U);
        });
    }
}

TEST(NestingToHost, AnArrayThatHoldsItselfIsAbandoned) {
    inBridge([](PluginHost& host) {
        NSMutableArray* array = [NSMutableArray arrayWithObject:@"before"];
        [array addObject:array];
        [array addObject:@"after"];
        expectTooDeep(host, (id)array);
        [array removeAllObjects];
    });
}

TEST(NestingToHost, ADictionaryThatHoldsItselfIsAbandoned) {
    inBridge([](PluginHost& host) {
        NSMutableDictionary* dictionary = [NSMutableDictionary dictionaryWithObject:@"v" forKey:@"k"];
        [dictionary setObject:dictionary forKey:@"itself"];
        expectTooDeep(host, (id)dictionary);
        EXPECT_THAT(raisedBy(host, [&] { EXPECT_EQ(NSDictionaryRB(dictionary), nullptr); }),
                    ElementsAre(kTooDeep));
        [dictionary removeAllObjects];
    });
}

// ---- through the host, whose methods may call the plugin while it converts

// A function of the host's, which nothing may unwind.
class HostFrame {
public:
    HostFrame() { ++entered; }
    HostFrame(const HostFrame&) = delete;
    HostFrame& operator=(const HostFrame&) = delete;
    ~HostFrame() { unwound += std::uncaught_exceptions() > exceptionsBefore_ ? 1 : 0; }

    static inline int entered = 0;
    static inline int unwound = 0;

private:
    int exceptionsBefore_ = std::uncaught_exceptions();
};

// What the host does whenever the plugin calls the method of one of the tests below.
std::function<void()> inHost;

void callHost() {
    const HostFrame frame;
    const auto now = inHost; // which may set what comes next
    now();
}

constexpr const char* kSetter = "Value(key As Variant, Assigns _value As Variant)";
constexpr const char* kGetter = "Value(key As Variant) As Variant";

REALobject valueThroughHost(REALobject /*dictionary*/, REALobject /*key*/) {
    callHost();
    return nullptr;
}

void setThroughHost(REALobject /*dictionary*/, REALobject /*key*/, REALobject /*value*/) {
    callHost();
}

using ObjectGetter = REALobject(REALarray, std::int64_t);
using ObjectInserter = void(REALarray, std::int64_t, REALobject);

ObjectGetter* elementThroughHost(REALarray /*array*/) {
    return +[](REALarray array, std::int64_t index) {
        callHost();
        return hostFunction<ObjectGetter*(REALarray)>("PluginObjectArrayGetProc")(array)(array, index);
    };
}

ObjectInserter* insertionThroughHost(REALarray /*array*/) {
    return +[](REALarray, std::int64_t, REALobject) { callHost(); };
}

void callBackFromEverything(ObjectMethods& methods) {
    methods.answer(kGetter, reinterpret_cast<void*>(valueThroughHost));
    methods.answer(kSetter, reinterpret_cast<void*>(setThroughHost));
    PluginHost::replace("PluginObjectArrayGetProc", elementThroughHost);
    PluginHost::replace("PluginObjectArrayInsertProc", insertionThroughHost);
}

using Conversion = std::function<bool()>; // whether there was a result

Conversion toHost(PluginHost& host, id object) {
    PluginHost* const runtime = &host;
    return [=] { return !(*runtime)->adopt(NewVariantFromNSObject(object)).isNull(); };
}

// Each of one collection with three elements.
std::vector<Conversion> conversionsOfThree(PluginHost& host) {
    Dictionary dictionary = host->dictionary();
    for (const char* key : {"a", "b", "c"}) {
        dictionary.setValue(key, key);
    }
    const Array array = host->array(ElementType::Object, {1, 2, 3});
    NSArray* cocoaArray = [NSArray arrayWithObjects:@"a", @"b", @"c", nil];
    NSDictionary* cocoaDictionary = [NSDictionary dictionaryWithObjects:cocoaArray forKeys:cocoaArray];
    return {[=] { return GetVariantAsNSObject(dictionary.handle()) != nil; },
            [=] { return GetVariantAsNSObject(array.handle()) != nil; }, toHost(host, cocoaArray),
            toHost(host, [NSSet setWithArray:cocoaArray]), toHost(host, cocoaDictionary)};
}
constexpr std::size_t kConversionsOfThree = 5;

// The levels count on, so that a cycle which only the host's methods close ends too.
TEST(NestingThroughHost, ACycleIsAbandonedWithoutUnwindingTheHost) {
    for (std::size_t which = 0; which < kConversionsOfThree; ++which) {
        SCOPED_TRACE(which);
        inBridge([which](PluginHost& host) {
            ObjectMethods methods;
            callBackFromEverything(methods);
            const Conversion convert = conversionsOfThree(host)[which];
            inHost = [&] { EXPECT_FALSE(convert()); };
            EXPECT_THAT(raisedBy(host, [&] { EXPECT_FALSE(convert()); }), ElementsAre(kTooDeep));
            EXPECT_EQ(HostFrame::entered, kDeepest); // one of each level: none goes on to its next element
            EXPECT_EQ(HostFrame::unwound, 0);
            EXPECT_EQ(LastDictionary, nullptr);
            inHost = [] {};
            EXPECT_THAT(raisedBy(host, [&] { EXPECT_TRUE(convert()); }), IsEmpty());
            inHost = nullptr;
        });
    }
}

// The host may try again before it returns: that is part of the conversion which was abandoned.
TEST(NestingThroughHost, TryingAgainRaisesNothingMore) {
    inBridge([](PluginHost& host) {
        ObjectMethods methods;
        callBackFromEverything(methods);
        const auto conversions = conversionsOfThree(host);
        inHost = [&] {
            for (const Conversion& convert : conversions) {
                EXPECT_FALSE(convert());
            }
        };
        EXPECT_THAT(raisedBy(host, [&] { EXPECT_FALSE(conversions[0]()); }), ElementsAre(kTooDeep));
        EXPECT_EQ(HostFrame::entered, kDeepest);
        EXPECT_EQ(HostFrame::unwound, 0);
        inHost = nullptr;
    });
}

TEST(NestingThroughHost, WhatIsInsideIsConvertedUpToTheDeepestLevel) {
    for (std::size_t which = 0; which < kConversionsOfThree; ++which) {
        inBridge([which](PluginHost& host) {
            ObjectMethods methods;
            callBackFromEverything(methods);
            const Conversion convert = conversionsOfThree(host)[which];
            id inner = nestedCocoa(kDeepest - 1, inDictionary);
            inHost = [&] {
                inHost = [] {};
                EXPECT_FALSE(host->adopt(NewVariantFromNSObject(inner)).isNull());
            };
            EXPECT_THAT(raisedBy(host, [&] { EXPECT_TRUE(convert()); }), IsEmpty());
            EXPECT_GT(HostFrame::entered, 3);
            inHost = nullptr;
        });
    }
}

// Not even with the little that was to be converted.
TEST(NestingThroughHost, AnEmptyCollectionIsAbandonedToo) {
    inBridge([](PluginHost& host) {
        PluginHost::replace(
            "REALGetPropValueInteger", +[](REALobject object, const char* name, std::int64_t* out) {
                callHost();
                return hostFunction<bool(REALobject, const char*, std::int64_t*)>("REALGetPropValueInteger")(
                    object, name, out);
            });
        const Dictionary empty = host->dictionary();
        inHost = [&] { EXPECT_EQ(NewNSDictionary(empty.handle()), nil); };
        EXPECT_THAT(raisedBy(host, [&] { EXPECT_EQ(NewNSDictionary(empty.handle()), nil); }),
                    ElementsAre(kTooDeep));
        EXPECT_EQ(HostFrame::entered, kDeepest);
        inHost = nullptr;
    });
}

// The host catches what its own call raises, and is none the wiser about the conversion around it.
TEST(NestingThroughHost, TheInnerConversionRaises) {
    inBridge([](PluginHost& host) {
        ObjectMethods methods;
        callBackFromEverything(methods);
        const Conversion convert = conversionsOfThree(host)[0];
        const Object inner = nestedArrays(host, kDeepest);
        std::vector<std::string> inside;
        inHost = [&] {
            inHost = [] {};
            inside = raisedBy(host, [&] { EXPECT_EQ(GetVariantAsNSObject(inner.handle()), nil); });
        };
        EXPECT_THAT(raisedBy(host, [&] { EXPECT_FALSE(convert()); }), IsEmpty());
        EXPECT_THAT(inside, ElementsAre(kTooDeep));
        EXPECT_THAT(raisedBy(host, [&] { EXPECT_TRUE(convert()); }), IsEmpty());
        inHost = nullptr;
    });
}

} // namespace
