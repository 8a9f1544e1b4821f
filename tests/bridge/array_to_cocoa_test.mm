// Host arrays of every element type, read without a call and by get functions.

#include "bridge/variant_to_cocoa.h"

#include "plugin/platform_guard.h"
#include "tests/bridge/bridge_host.h"

#include <cstring>

namespace {

using namespace zqm::bridge::test;
using testing::ElementsAre;
using testing::IsEmpty;
using zqm::host::Array;
using zqm::host::ArrayCall;
using zqm::host::ElementType;
using zqm::host::Value;

constexpr double kShowsElements = 2015.4;  // hosts of this version show where the elements are
constexpr double kFirstThatHides = 2016.0; // and from here on they don't

// The word of an array object that may point to its elements.
const void*& directWord(const Array& array) {
    return *reinterpret_cast<const void**>(reinterpret_cast<char*>(array.array()) + 56);
}

struct Elements {
    int code;
    ElementType type;
    const char* getProc;
    const char* lock; // of an element read without a call; null: needs none
    std::vector<Value> (*three)(PluginHost& host);
    NSArray* (*expected)();
    id (*missing)(); // what counts for an element that is gone; null: nothing does
};

template <typename Number>
std::vector<Value> three(Number one, Number two, Number last) {
    return {one, two, last};
}

NSDate* dateOf(int year) {
    return [NSCalendarDate dateWithYear:year
                                  month:2
                                    day:3
                                   hour:4
                                 minute:5
                                 second:6
                               timeZone:[NSTimeZone localTimeZone]];
}

const Elements kIntegers{4098,
                         ElementType::Integer,
                         "PluginIntegerArrayGetProc",
                         nullptr,
                         [](PluginHost&) { return three<std::int64_t>(-1, 1LL << 40, 7); },
                         [] {
                             return [NSArray arrayWithObjects:[NSNumber numberWithLong:-1],
                                                              [NSNumber numberWithLong:1L << 40],
                                                              [NSNumber numberWithLong:7], nil];
                         },
                         [] { return (id)[NSNumber numberWithLong:0]; }};

const Elements kInt64s{4099,
                       ElementType::Int64,
                       "PluginInt64ArrayGetProc",
                       nullptr,
                       [](PluginHost&) { return three<std::int64_t>(-1, 1LL << 40, 7); },
                       [] {
                           return [NSArray arrayWithObjects:[NSNumber numberWithLongLong:-1],
                                                            [NSNumber numberWithLongLong:1LL << 40],
                                                            [NSNumber numberWithLongLong:7], nil];
                       },
                       [] { return (id)[NSNumber numberWithLongLong:0]; }};

const Elements kSingles{4100,
                        ElementType::Single,
                        "PluginSingleArrayGetProc",
                        nullptr,
                        [](PluginHost&) { return three(0.1F, -2.5F, 3.0F); },
                        [] {
                            return [NSArray arrayWithObjects:[NSNumber numberWithFloat:0.1F],
                                                             [NSNumber numberWithFloat:-2.5F],
                                                             [NSNumber numberWithFloat:3.0F], nil];
                        },
                        [] { return (id)[NSNumber numberWithFloat:0]; }};

const Elements kDoubles{4101,
                        ElementType::Double,
                        "PluginDoubleArrayGetProc",
                        nullptr,
                        [](PluginHost&) { return three(0.1, -2.5, 1e300); },
                        [] {
                            return [NSArray arrayWithObjects:[NSNumber numberWithDouble:0.1],
                                                             [NSNumber numberWithDouble:-2.5],
                                                             [NSNumber numberWithDouble:1e300], nil];
                        },
                        [] { return (id)[NSNumber numberWithDouble:0]; }};

const Elements kDates{4103,
                      ElementType::Date,
                      "PluginObjectArrayGetProc",
                      "REALLockObject",
                      [](PluginHost& host) {
                          return std::vector<Value>{host->date(2001, 2, 3, 4, 5, 6),
                                                    host->date(2002, 2, 3, 4, 5, 6),
                                                    host->date(2003, 2, 3, 4, 5, 6)};
                      },
                      [] { return [NSArray arrayWithObjects:dateOf(2001), dateOf(2002), dateOf(2003), nil]; },
                      nullptr};

const Elements kStrings{4104,
                        ElementType::String,
                        "PluginStringArrayGetProc",
                        "REALLockString",
                        [](PluginHost&) {
                            return std::vector<Value>{"one", "Gr\xC3\xBC\xC3\x9F", ""};
                        },
                        [] { return [NSArray arrayWithObjects:@"one", @"Gr\u00FC\u00DF", @"", nil]; },
                        nullptr};

const Elements kObjects{4105,
                        ElementType::Object,
                        "PluginObjectArrayGetProc",
                        "REALLockObject",
                        [](PluginHost&) {
                            return std::vector<Value>{"one", 2, true};
                        },
                        [] {
                            return [NSArray arrayWithObjects:@"one", [NSNumber numberWithLong:2],
                                                             [NSNumber numberWithBool:YES], nil];
                        },
                        nullptr};

const Elements kBooleans{4107,
                         ElementType::Boolean,
                         "PluginBooleanArrayGetProc",
                         nullptr,
                         [](PluginHost&) {
                             return std::vector<Value>{true, false, true};
                         },
                         [] {
                             return [NSArray arrayWithObjects:[NSNumber numberWithBool:YES],
                                                              [NSNumber numberWithBool:NO],
                                                              [NSNumber numberWithBool:YES], nil];
                         },
                         [] { return (id)[NSNumber numberWithBool:NO]; }};

const Elements kTexts{4133,
                      ElementType::Text,
                      "PluginTextArrayGetProc",
                      "PluginLockText",
                      [](PluginHost&) {
                          return std::vector<Value>{"one", "Gr\xC3\xBC\xC3\x9F", ""};
                      },
                      [] { return [NSArray arrayWithObjects:@"one", @"Gr\u00FC\u00DF", @"", nil]; },
                      nullptr};

Array arrayOf(PluginHost& host, const Elements& elements) {
    return host->array(elements.type, elements.three(host));
}

void expectConverted(NSArray* expected, id actual) {
    EXPECT_TRUE([actual isKindOfClass:[NSMutableArray class]]);
    ASSERT_EQ([actual count], [expected count]);
    for (NSUInteger i = 0; i < [expected count]; ++i) {
        id wanted = [expected objectAtIndex:i];
        id got = [actual objectAtIndex:i];
        EXPECT_TRUE([wanted isEqual:got]) << i << ": " << [[got description] UTF8String];
        if ([wanted isKindOfClass:[NSNumber class]]) {
            EXPECT_STREQ([got objCType], [wanted objCType]) << i;
        }
    }
}

// The platform's exception for what can't be an element.
void expectRefused(const Array& array) {
    id result = nil;
    NSException* exception = runUnderPlatformGuard(
        [&] { result = GetVariantAsNSObject(reinterpret_cast<REALobject>(array.array())); });
    EXPECT_STREQ([[exception name] UTF8String], "NSInvalidArgumentException");
    EXPECT_EQ(result, nil);
}

std::string tooBig(int bound, int index) {
    return "OutOfBoundsException: Parameter index  is too big. Range is 0 to " + std::to_string(bound) +
           ", but value is " + std::to_string(index) + ".";
}

class ArrayToCocoa : public testing::TestWithParam<const Elements*> {
public:
    static const Elements& elements() { return *GetParam(); }
};

TEST_P(ArrayToCocoa, ReadsEveryElementByTheGetFunction) {
    inBridge([](PluginHost& host) {
        const Array array = arrayOf(host, elements());
        EXPECT_EQ(array.handle(), reinterpret_cast<REALobject>(array.array()));
        EXPECT_EQ(array.variantType(), elements().code);
        id converted = GetVariantAsNSObject(array.handle());
        expectConverted(elements().expected(), converted);
        EXPECT_EQ([converted retainCount], 1U);
        EXPECT_EQ(host->entryPoints().calls(elements().getProc), 3U);
        EXPECT_EQ(host->entryPoints().calls("RuntimeUBound"), 4U);
    });
}

TEST_P(ArrayToCocoa, ReadsShownElementsWithoutACall) {
    inBridge(kShowsElements, [](PluginHost& host) {
        const Array array = arrayOf(host, elements());
        ASSERT_NE(directWord(array), nullptr);
        expectConverted(elements().expected(), GetVariantAsNSObject(array.handle()));
        EXPECT_EQ(host->entryPoints().lookups(elements().getProc), 0U);
        if (elements().lock != nullptr) {
            EXPECT_GE(host->entryPoints().calls(elements().lock), 3U);
        }
    });
}

TEST_P(ArrayToCocoa, AnOldHostThatShowsNothingIsAskedForElements) {
    inBridge(kShowsElements, [](PluginHost& host) {
        const Array array = arrayOf(host, elements());
        const void* const shown = std::exchange(directWord(array), nullptr);
        expectConverted(elements().expected(), GetVariantAsNSObject(array.handle()));
        EXPECT_EQ(host->entryPoints().calls(elements().getProc), 3U);
        directWord(array) = shown;
    });
}

TEST_P(ArrayToCocoa, TheWordMeansNothingFrom2016On) {
    inBridge(kFirstThatHides, [](PluginHost& host) {
        const Array array = arrayOf(host, elements());
        EXPECT_EQ(directWord(array), nullptr);
        const std::array<double, 3> others{1.5, 2.5, 3.5};
        directWord(array) = others.data();
        expectConverted(elements().expected(), GetVariantAsNSObject(array.handle()));
        EXPECT_EQ(host->entryPoints().calls(elements().getProc), 3U);
        directWord(array) = nullptr;
    });
}

TEST_P(ArrayToCocoa, AnEmptyArrayIsAnEmptyOneAndNoElementIsAskedFor) {
    for (const double version : {kShowsElements, zqm::host::kDefaultVersion}) {
        inBridge(version, [](PluginHost& host) {
            const Array array = host->array(elements().type);
            expectConverted([NSArray array], GetVariantAsNSObject(array.handle()));
            EXPECT_EQ(host->entryPoints().calls("RuntimeUBound"), 1U);
            EXPECT_EQ(host->entryPoints().lookups(elements().getProc), 0U);
        });
    }
}

void expectNoElements(const Array& array, const Elements& elements) {
    if (elements.missing == nullptr) {
        expectRefused(array);
        return;
    }
    id zero = elements.missing();
    expectConverted([NSArray arrayWithObjects:zero, zero, zero, nil], GetVariantAsNSObject(array.handle()));
}

TEST_P(ArrayToCocoa, WithoutItsGetEntryPointHasNeutralElements) {
    inBridge([](PluginHost& host) {
        host->entryPoints().refuse(elements().getProc);
        expectNoElements(arrayOf(host, elements()), elements());
    });
}

TEST_P(ArrayToCocoa, WithoutAGetFunctionHasNeutralElements) {
    inBridge([](PluginHost& host) {
        PluginHost::replace(
            elements().getProc, +[](REALarray) -> void* { return nullptr; });
        expectNoElements(arrayOf(host, elements()), elements());
    });
}

// Without it the bound is 0 each time: one element is read.
TEST_P(ArrayToCocoa, WithoutUpperBoundsHasItsFirstElement) {
    for (const double version : {kShowsElements, zqm::host::kDefaultVersion}) {
        inBridge(version, [](PluginHost& host) {
            host->entryPoints().refuse("RuntimeUBound");
            const Array array = arrayOf(host, elements());
            expectConverted([NSArray arrayWithObject:[elements().expected() objectAtIndex:0]],
                            GetVariantAsNSObject(array.handle()));
        });
    }
}

// The first upper bound decides how many elements there are.
TEST_P(ArrayToCocoa, ThatShrinksRaisesForEachElementThatIsGone) {
    for (const double version : {kShowsElements, zqm::host::kDefaultVersion}) {
        inBridge(version, [](PluginHost& host) {
            Array array = arrayOf(host, elements());
            array.before(ArrayCall::UBound, 3, [&] { array.resize(1); });
            id result = nil;
            NSException* exception = nil;
            const auto raised = raisedBy(host, [&] {
                exception = runUnderPlatformGuard([&] { result = GetVariantAsNSObject(array.handle()); });
            });
            if (elements().missing == nullptr) {
                EXPECT_THAT(raised, ElementsAre(tooBig(0, 1)));
                EXPECT_STREQ([[exception name] UTF8String], "NSInvalidArgumentException");
                EXPECT_EQ(result, nil);
                return;
            }
            EXPECT_EQ(exception, nil);
            EXPECT_THAT(raised, ElementsAre(tooBig(0, 1), tooBig(0, 2)));
            id zero = elements().missing();
            expectConverted(
                [NSArray arrayWithObjects:[elements().expected() objectAtIndex:0], zero, zero, nil], result);
        });
    }
}

TEST_P(ArrayToCocoa, ThatLosesAllElementsSaysSo) {
    inBridge([](PluginHost& host) {
        Array array = arrayOf(host, elements());
        array.before(ArrayCall::UBound, 2, [&] { array.resize(0); });
        NSException* exception = nil;
        const auto raised = raisedBy(
            host, [&] { exception = runUnderPlatformGuard([&] { GetVariantAsNSObject(array.handle()); }); });
        if (elements().missing == nullptr) {
            EXPECT_NE(exception, nil);
            EXPECT_THAT(raised, ElementsAre(tooBig(-1, 0)));
        } else {
            EXPECT_EQ(exception, nil);
            EXPECT_THAT(raised, ElementsAre(tooBig(-1, 0), tooBig(-1, 1), tooBig(-1, 2)));
        }
    });
}

TEST_P(ArrayToCocoa, ThatGrowsKeepsItsFirstBound) {
    for (const double version : {kShowsElements, zqm::host::kDefaultVersion}) {
        inBridge(version, [](PluginHost& host) {
            Array array = arrayOf(host, elements());
            // Other memory for the elements, which are looked up anew.
            array.before(ArrayCall::UBound, 2, [&] { array.resize(10'000); });
            expectConverted(elements().expected(), GetVariantAsNSObject(array.handle()));
        });
    }
}

INSTANTIATE_TEST_SUITE_P(AllTypes, ArrayToCocoa,
                         testing::Values(&kIntegers, &kInt64s, &kSingles, &kDoubles, &kDates, &kStrings,
                                         &kObjects, &kBooleans, &kTexts),
                         [](const testing::TestParamInfo<const Elements*>& one) {
                             return "code" + std::to_string(one.param->code);
                         });

// ---- elements that are handles

class HandlesToCocoa : public testing::TestWithParam<const Elements*> {
public:
    static const Elements& elements() { return *GetParam(); }
};

TEST_P(HandlesToCocoa, ANullElementEndsTheConversionWithThePlatformsException) {
    for (const double version : {kShowsElements, zqm::host::kDefaultVersion}) {
        inBridge(version, [](PluginHost& host) {
            std::vector<Value> values = elements().three(host);
            Array array = host->array(elements().type, values);
            array.resize(4);
            expectRefused(array);
        });
    }
}

// What can't be locked is not unlocked either.
TEST_P(HandlesToCocoa, AHostThatCannotLockIsAskedForElements) {
    inBridge(kShowsElements, [](PluginHost& host) {
        host->entryPoints().refuse(elements().lock);
        const Array array = arrayOf(host, elements());
        expectConverted(elements().expected(), GetVariantAsNSObject(array.handle()));
        EXPECT_EQ(host->entryPoints().calls(elements().getProc), 3U);
    });
}

INSTANTIATE_TEST_SUITE_P(AllTypes, HandlesToCocoa, testing::Values(&kDates, &kStrings, &kObjects, &kTexts),
                         [](const testing::TestParamInfo<const Elements*>& one) {
                             return "code" + std::to_string(one.param->code);
                         });

TEST(ArrayToCocoa, ADateWithoutFieldsEndsTheConversion) {
    inBridge([](PluginHost& host) {
        const Array array = host->array(ElementType::Date, {host->date(2001)});
        host->entryPoints().refuse("REALGetPropValueInteger");
        expectRefused(array);
    });
}

TEST(ArrayToCocoa, AnObjectWithoutCounterpartEndsTheConversion) {
    inBridge([](PluginHost& host) {
        const Array array = host->array(ElementType::Object, {1, host->variant(0, nullptr)});
        expectRefused(array);
    });
}

// ---- texts

TEST(ArrayToCocoa, ATextThatCannotBeCopiedIsReadFromItsVariant) {
    for (const double version : {kShowsElements, zqm::host::kDefaultVersion}) {
        inBridge(version, [](PluginHost& host) {
            host->entryPoints().refuse("PluginCopyTextCFString");
            const Array array = arrayOf(host, kTexts);
            expectConverted([NSArray arrayWithObjects:@"one", @"Gr\u00FC\u00DF", @"", nil],
                            GetVariantAsNSObject(array.handle()));
        });
    }
}

TEST(ArrayToCocoa, ATextThatNothingCanReadEndsTheConversion) {
    inBridge([](PluginHost& host) {
        host->entryPoints().refuse("PluginCopyTextCFString");
        host->entryPoints().refuse("PluginNewVariantText");
        expectRefused(arrayOf(host, kTexts));
    });
}

// ---- arrays within arrays

TEST(ArrayToCocoa, HoldsArraysOfEveryKind) {
    for (const double version : {kShowsElements, zqm::host::kDefaultVersion}) {
        inBridge(version, [](PluginHost& host) {
            std::vector<Value> inner;
            NSMutableArray* expected = [NSMutableArray array];
            for (const Elements* elements : {&kIntegers, &kInt64s, &kSingles, &kDoubles, &kDates, &kStrings,
                                             &kObjects, &kBooleans, &kTexts}) {
                inner.emplace_back(arrayOf(host, *elements));
                [expected addObject:elements->expected()];
            }
            inner.emplace_back(host->array(ElementType::Object));
            [expected addObject:[NSArray array]];
            const Array array = host->array(ElementType::Object, inner);
            expectConverted(expected, GetVariantAsNSObject(array.handle()));
        });
    }
}

TEST(ArrayToCocoa, ANullElementOfAnInnerArrayEndsItAll) {
    inBridge([](PluginHost& host) {
        Array inner = host->array(ElementType::String, {"one"});
        inner.resize(2);
        const Array array = host->array(ElementType::Object, {1, inner, 2});
        expectRefused(array);
    });
}

} // namespace
