// Variants of every type code as Cocoa objects.

#include "bridge/variant_to_cocoa.h"

#include "tests/bridge/bridge_host.h"
#include "tests/bridge/documented_variant_codes.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace {

using namespace zqm::bridge::test;
using testing::ElementsAre;
using testing::IsEmpty;
using zqm::host::Object;

// The same class, the same type of number, the same value.
void expectNumber(NSNumber* expected, id actual) {
    ASSERT_NE(actual, nil);
    EXPECT_STREQ([actual objCType], [expected objCType]);
    EXPECT_TRUE([expected isEqual:actual]) << [[actual description] UTF8String];
    EXPECT_EQ([actual class], [expected class]);
}

void expectString(NSString* expected, id actual) {
    ASSERT_NE(actual, nil);
    EXPECT_TRUE([actual isKindOfClass:[NSString class]]);
    EXPECT_TRUE([expected isEqual:actual]) << [[actual description] UTF8String];
}

std::optional<Kind> documentedKind(int code) {
    const auto* row = std::find_if(kDocumentedCodes.begin(), kDocumentedCodes.end(),
                                   [code](const DocumentedCode& one) { return one.code == code; });
    return row != kDocumentedCodes.end() ? std::optional(row->kind) : std::nullopt;
}

bool isDocumentedArray(int code) {
    return std::count(kDocumentedArrayCodes.begin(), kDocumentedArrayCodes.end(), code) != 0;
}

// What the number 1 in a Variant of that kind must be.
void expectOne(Kind kind, id actual) {
    switch (kind) {
    case Kind::Long:
        return expectNumber([NSNumber numberWithLong:1], actual);
    case Kind::LongLong:
        return expectNumber([NSNumber numberWithLongLong:1], actual);
    case Kind::Float:
        return expectNumber([NSNumber numberWithFloat:1], actual);
    case Kind::Double:
        return expectNumber([NSNumber numberWithDouble:1], actual);
    case Kind::Bool:
        return expectNumber([NSNumber numberWithBool:YES], actual);
    case Kind::String:
        return expectString(@"1", actual);
    case Kind::Date:   // holds none
    case Kind::Object: // of no known class
        EXPECT_EQ(actual, nil);
    }
}

TEST(VariantToCocoa, EveryTypeCodeHasItsKind) {
    inBridge([](PluginHost& host) {
        for (int code = 0; code <= 4200; ++code) {
            SCOPED_TRACE(code);
            const AutoreleasePool pool;
            if (isDocumentedArray(code)) {
                const auto array = host->array(static_cast<zqm::host::ElementType>(code - 4096));
                id converted = GetVariantAsNSObject(array.handle());
                EXPECT_TRUE([converted isKindOfClass:[NSMutableArray class]]);
                EXPECT_EQ([converted count], 0U);
                continue;
            }
            const Object variant = host->variant(code, 1);
            id converted = GetVariantAsNSObject(variant.handle());
            if (const auto kind = documentedKind(code)) {
                expectOne(*kind, converted);
            } else {
                EXPECT_EQ(converted, nil);
            }
        }
    });
}

TEST(VariantToCocoa, CodesFarOffAreNil) {
    inBridge([](PluginHost& host) {
        for (const int code : {-1, -4098, 4096 * 2 + 2, 65536 + 2, std::numeric_limits<int>::max(),
                               std::numeric_limits<int>::min()}) {
            const Object variant = host->variant(code, 1);
            EXPECT_EQ(GetVariantAsNSObject(variant.handle()), nil) << code;
        }
    });
}

TEST(VariantToCocoa, NullIsNilAndAsksTheHostNothing) {
    inBridge([](PluginHost& host) {
        EXPECT_EQ(GetVariantAsNSObject(nullptr), nil);
        EXPECT_THAT(host->entryPoints().asked(), IsEmpty());
    });
}

TEST(VariantToCocoa, NumbersKeepAllTheirBits) {
    inBridge([](PluginHost& host) {
        constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();
        constexpr auto kGreatest = std::numeric_limits<std::int64_t>::max();
        for (const std::int64_t value :
             {kLeast, std::int64_t{-1}, std::int64_t{0}, std::int64_t{5}, std::int64_t{1} << 32, kGreatest}) {
            for (const int code : {2, 3, 16}) {
                const Object variant = host->variant(code, value);
                EXPECT_EQ([GetVariantAsNSObject(variant.handle()) longLongValue], value) << code;
            }
        }
        const Object single = host->variant(4, 0.1F);
        EXPECT_EQ([GetVariantAsNSObject(single.handle()) floatValue], 0.1F);
        for (const int code : {5, 6}) {
            const Object variant = host->variant(code, 0.1);
            EXPECT_EQ([GetVariantAsNSObject(variant.handle()) doubleValue], 0.1) << code;
        }
    });
}

TEST(VariantToCocoa, BooleansAreThePlatformsOwn) {
    inBridge([](PluginHost& host) {
        const Object yes = host->variant(true);
        const Object no = host->variant(false);
        const Object wide = host->variant(11, std::int64_t{1} << 40);
        EXPECT_EQ(GetVariantAsNSObject(yes.handle()), [NSNumber numberWithBool:YES]);
        EXPECT_EQ(GetVariantAsNSObject(no.handle()), [NSNumber numberWithBool:NO]);
        EXPECT_EQ(GetVariantAsNSObject(wide.handle()), [NSNumber numberWithBool:YES]);
    });
}

TEST(VariantToCocoa, TextsOfEveryKindKeepTheirCharacters) {
    inBridge([](PluginHost& host) {
        for (const int code : {8, 18, 19, 20, 21, 23, 37}) {
            const Object variant = host->variant(code, "Gr\xC3\xBC\xC3\x9F"
                                                       "e \xF0\x9F\x98\x80");
            expectString(@"Gr\u00FC\u00DFe \U0001F600", GetVariantAsNSObject(variant.handle()));
        }
        const Object latin = host->variant(8, host->string("\xFC", zqm::host::encoding::kIsoLatin1));
        expectString(@"\u00FC", GetVariantAsNSObject(latin.handle()));
    });
}

TEST(VariantToCocoa, AStringThatGivesNothingIsTheEmptyString) {
    inBridge([](PluginHost& host) {
        const Object empty = host->variant(8, "");
        const Object null = host->variant(8, zqm::host::String());
        const Object noText = host->variant(8, host->string("\xFF\xFE"));
        for (const Object& variant : {empty, null, noText}) {
            expectString(@"", GetVariantAsNSObject(variant.handle()));
        }
    });
}

TEST(VariantToCocoa, StringsAreFreshAndBelongToThePool) {
    inBridge([](PluginHost& host) {
        const Object variant = host->variant(8, "a text that is long enough to be an object of its own");
        id text = GetVariantAsNSObject(variant.handle());
        EXPECT_EQ([text retainCount], 1U);
        [text retain];
        {
            const AutoreleasePool pool;
            EXPECT_NE(GetVariantAsNSObject(variant.handle()), text);
        }
        EXPECT_EQ([text retainCount], 2U);
        [text release];
    });
}

// ---- dates

TEST(VariantToCocoa, ADateIsReadFromItsProperty) {
    inBridge([](PluginHost& host) {
        const Object date = host->date(2001, 2, 3, 4, 5, 6);
        const Object variant = host->variant(7, date);
        NSDate* expected = [NSCalendarDate dateWithYear:2001
                                                  month:2
                                                    day:3
                                                   hour:4
                                                 minute:5
                                                 second:6
                                               timeZone:[NSTimeZone localTimeZone]];
        for (const Object& one : {date, variant}) {
            id converted = GetVariantAsNSObject(one.handle());
            EXPECT_TRUE([converted isKindOfClass:[NSDate class]]);
            EXPECT_TRUE([expected isEqualToDate:converted]);
        }
    });
}

TEST(VariantToCocoa, ADateThatCannotBeReadIsNil) {
    inBridge([](PluginHost& host) {
        const Object date = host->date(2001);
        host->entryPoints().refuse("REALGetPropValueObject");
        EXPECT_EQ(GetVariantAsNSObject(date.handle()), nil);
        host->entryPoints().allow("REALGetPropValueObject");
        EXPECT_NE(GetVariantAsNSObject(date.handle()), nil);
        const Object holdsNone = host->variant(7, nullptr);
        EXPECT_EQ(GetVariantAsNSObject(holdsNone.handle()), nil);
    });
}

// ---- the type code

std::vector<std::string> propertiesAsked;

template <typename Value>
using ReadProperty = bool(REALobject, const char*, Value*);

template <typename Value>
bool readAndNote(const char* entryPoint, REALobject object, const char* name, Value* out) {
    propertiesAsked.emplace_back(name);
    return hostFunction<ReadProperty<Value>>(entryPoint)(object, name, out);
}

TEST(VariantToCocoa, AsksForItsTypeOnceByDeclaration) {
    inBridge([](PluginHost& host) {
        static std::vector<std::string> loaded;
        PluginHost::replace(
            "REALLoadGlobalMethod", +[](const char* module, const char* declaration) {
                EXPECT_EQ(module, nullptr);
                loaded.emplace_back(declaration);
                return hostFunction<void*(const char*, const char*)>("REALLoadGlobalMethod")(module,
                                                                                             declaration);
            });
        const Object variant = host->variant(5);
        GetVariantAsNSObject(variant.handle());
        expectNumber([NSNumber numberWithLong:5], GetVariantAsNSObject(variant.handle()));
        EXPECT_THAT(loaded, ElementsAre("VarType(value As Variant) As Int32"));
        EXPECT_EQ(host->entryPoints().lookups("REALGetPropValueInteger"), 0U);
    });
}

TEST(VariantToCocoa, ReadsTheTypePropertyWhereThereIsNoSuchMethod) {
    inBridge([](PluginHost& host) {
        PluginHost::replace(
            "REALGetPropValueInteger", +[](REALobject object, const char* name, std::int64_t* out) {
                return readAndNote("REALGetPropValueInteger", object, name, out);
            });
        host->entryPoints().refuse("REALLoadGlobalMethod");
        const Object variant = host->variant(0.5);
        expectNumber([NSNumber numberWithDouble:0.5], GetVariantAsNSObject(variant.handle()));
        EXPECT_THAT(propertiesAsked, ElementsAre("Type"));

        host->entryPoints().allow("REALLoadGlobalMethod");
        expectNumber([NSNumber numberWithDouble:0.5], GetVariantAsNSObject(variant.handle()));
        EXPECT_THAT(propertiesAsked, ElementsAre("Type"));
    });
}

TEST(VariantToCocoa, WithoutAnyTypeIsNil) {
    inBridge([](PluginHost& host) {
        host->entryPoints().refuse("REALLoadGlobalMethod");
        host->entryPoints().refuse("REALGetPropValueInteger");
        const Object variant = host->variant(5);
        EXPECT_EQ(GetVariantAsNSObject(variant.handle()), nil);
    });
}

// ---- readers and the properties in their place

struct Reader {
    int code;
    const char* reader;
    const char* propertyReader;
    const char* property;
    const char* whenUnreadable; // as text
};

class VariantReader : public testing::TestWithParam<Reader> {
public:
    static Object variant(PluginHost& host) {
        return GetParam().code == 8 ? host->variant(8, "1") : host->variant(GetParam().code, 1);
    }
    static std::string text(const Object& variant) {
        return [[GetVariantAsNSObject(variant.handle()) description] UTF8String];
    }
    static void noteProperties() {
        PluginHost::replace(
            "REALGetPropValueInt64", +[](REALobject object, const char* name, std::int64_t* out) {
                return readAndNote("REALGetPropValueInt64", object, name, out);
            });
        PluginHost::replace(
            "REALGetPropValueSingle", +[](REALobject object, const char* name, float* out) {
                return readAndNote("REALGetPropValueSingle", object, name, out);
            });
        PluginHost::replace(
            "REALGetPropValueDouble", +[](REALobject object, const char* name, double* out) {
                return readAndNote("REALGetPropValueDouble", object, name, out);
            });
        PluginHost::replace(
            "REALGetPropValueString", +[](REALobject object, const char* name, REALstring* out) {
                return readAndNote("REALGetPropValueString", object, name, out);
            });
    }
};

TEST_P(VariantReader, IsAskedAndNotTheProperty) {
    inBridge([](PluginHost& host) {
        noteProperties();
        const Object one = variant(host);
        EXPECT_EQ(text(one), "1");
        EXPECT_EQ(host->entryPoints().calls(GetParam().reader), 1U);
        EXPECT_THAT(propertiesAsked, IsEmpty());
    });
}

TEST_P(VariantReader, IsBelievedWhenItSaysNothing) {
    inBridge([](PluginHost& host) {
        noteProperties();
        const bool isString = GetParam().property == std::string("StringValue");
        const Object nothing = isString ? host->variant(GetParam().code, zqm::host::String())
                                        : host->variant(GetParam().code, 0);
        EXPECT_EQ(text(nothing), GetParam().whenUnreadable);
        EXPECT_THAT(propertiesAsked, IsEmpty());
    });
}

TEST_P(VariantReader, IsReplacedByTheProperty) {
    inBridge([](PluginHost& host) {
        noteProperties();
        host->entryPoints().refuse(GetParam().reader);
        const Object one = variant(host);
        EXPECT_EQ(text(one), "1");
        EXPECT_THAT(propertiesAsked, ElementsAre(GetParam().property));
    });
}

TEST_P(VariantReader, AndAnUnreadablePropertyGiveNothing) {
    inBridge([](PluginHost& host) {
        host->entryPoints().refuse(GetParam().reader);
        host->entryPoints().failEveryCall(GetParam().propertyReader);
        const Object one = variant(host);
        EXPECT_EQ(text(one), GetParam().whenUnreadable);
        EXPECT_EQ(host->entryPoints().calls(GetParam().propertyReader), 1U);
    });
}

TEST_P(VariantReader, AndItsPropertyMissingGiveNothing) {
    inBridge([](PluginHost& host) {
        host->entryPoints().refuse(GetParam().reader);
        host->entryPoints().refuse(GetParam().propertyReader);
        const Object one = variant(host);
        EXPECT_EQ(text(one), GetParam().whenUnreadable);
    });
}

constexpr Reader integerReader(int code) {
    return {code, "VariantToInt64", "REALGetPropValueInt64", "LongValue", "0"};
}
constexpr Reader stringReader(int code) {
    return {code, "VariantToString", "REALGetPropValueString", "StringValue", ""};
}

INSTANTIATE_TEST_SUITE_P(
    AllCodes, VariantReader,
    testing::Values(integerReader(2), integerReader(3), integerReader(11), integerReader(16),
                    Reader{4, "VariantToSingle", "REALGetPropValueSingle", "SingleValue", "0"},
                    Reader{5, "VariantToDouble", "REALGetPropValueDouble", "DoubleValue", "0"},
                    Reader{6, "VariantToDouble", "REALGetPropValueDouble", "DoubleValue", "0"},
                    stringReader(8), stringReader(18), stringReader(19), stringReader(20), stringReader(21),
                    stringReader(23), stringReader(37)),
    [](const testing::TestParamInfo<Reader>& one) { return "code" + std::to_string(one.param.code); });

} // namespace
