// Values within values: as deep as they may be, deeper, and without end.

#include "bridge/cocoa_to_variant.h"
#include "bridge/dictionaries.h"
#include "bridge/variant_to_cocoa.h"
#include "tests/bridge/bridge_host.h"

#import <Foundation/Foundation.h>

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

TEST(NestingToHost, TheDeepestIsConverted) {
    for (id (*enclosing)(id) : {inArray, inSet, inDictionary}) {
        inBridge([enclosing](PluginHost& host) {
            id object = nestedCocoa(kDeepest, enclosing);
            EXPECT_THAT(
                raisedBy(host, [&] { EXPECT_FALSE(host->adopt(NewVariantFromNSObject(object)).isNull()); }),
                IsEmpty());
        });
    }
}

TEST(NestingToHost, OneLevelMoreIsAbandoned) {
    for (id (*enclosing)(id) : {inArray, inSet, inDictionary}) {
        inBridge([enclosing](PluginHost& host) {
            id object = nestedCocoa(kDeepest + 1, enclosing);
            expectTooDeep(host, object);
            expectTooDeep(host, object);
            EXPECT_FALSE(host->adopt(NewVariantFromNSObject(nestedCocoa(kDeepest, enclosing))).isNull());
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

} // namespace
