// Numbers and truth values of Cocoa as Variants.

#include "tests/bridge/to_host_fixture.h"

#include <limits>

using Char = decltype([static_cast<NSNumber*>(nil) charValue]); // signed char in GNUstep

// A number that says it holds a given C type, and answers each question differently.
@interface TypedNumber : NSNumber {
    const char* type;
}
+ (TypedNumber*)numberOfType:(const char*)type;
@end

@implementation TypedNumber
+ (TypedNumber*)numberOfType:(const char*)type {
    TypedNumber* number = [NSAllocateObject(self, 0, nullptr) autorelease];
    number->type = type;
    return number;
}
- (const char*)objCType {
    return type;
}
- (BOOL)boolValue {
    return YES;
}
- (Char)charValue {
    return 0;
}
- (unsigned char)unsignedCharValue {
    return 200;
}
- (short)shortValue {
    return -3000;
}
- (unsigned short)unsignedShortValue {
    return 60000;
}
- (int)intValue {
    return -5;
}
- (unsigned int)unsignedIntValue {
    return 4000000006U;
}
- (long)longValue {
    return -7000000000L;
}
- (unsigned long)unsignedLongValue {
    return 0xAAAAAAAA00000008UL;
}
- (long long)longLongValue {
    return -9;
}
- (unsigned long long)unsignedLongLongValue {
    return 10;
}
- (float)floatValue {
    return 0.5F;
}
- (double)doubleValue {
    return 0.25;
}
@end

namespace {

using zqm::host::Object;
using zqm::host::Value;

struct Documented {
    const char* type;
    std::int32_t code;
    double value;
};

void PrintTo(const Documented& row, std::ostream* out) {
    *out << row.type;
}

constexpr Documented kTypes[] = {
    {"C", code::kInteger, 200},  {"s", code::kInteger, -3000},      {"S", code::kInteger, 60000},
    {"i", code::kInteger, -5},   {"I", code::kInt64, 4000000006.0}, {"q", code::kInteger, -7000000000.0},
    {"Q", code::kInt64, 8},      {"f", code::kSingle, 0.5},         {"d", code::kDouble, 0.25},
    {"l", code::kDouble, 0.25},  {"L", code::kDouble, 0.25},        {"B", code::kDouble, 0.25},
    {"ii", code::kDouble, 0.25}, {"", code::kDouble, 0.25},
};

class NumbersToHost : public ToHostTest {};
class TypedNumbersToHost : public ToHostTest, public testing::WithParamInterface<Documented> {};

TEST_P(TypedNumbersToHost, AreVariantsOfTheirTypesKind) {
    const Object result = converted([TypedNumber numberOfType:GetParam().type]);
    EXPECT_EQ(result.variantType(), GetParam().code);
    EXPECT_EQ(result.variantValue().asDouble(), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(All, TypedNumbersToHost, testing::ValuesIn(kTypes));

TEST_F(NumbersToHost, OfTypeCharAreBooleans) {
    const Object result = converted([TypedNumber numberOfType:"c"]);
    EXPECT_EQ(result.variantType(), code::kBoolean);
    EXPECT_TRUE(result.variantValue().asBool());
}

void expectBoolean(const Object& variant, bool value) {
    EXPECT_EQ(variant.variantType(), code::kBoolean);
    EXPECT_EQ(variant.variantValue().asBool(), value);
}

// Whatever type the platform says they have.
TEST_F(NumbersToHost, TruthValuesAreBooleans) {
    expectBoolean(converted((id)kCFBooleanTrue), true);
    expectBoolean(converted((id)kCFBooleanFalse), false);
    expectBoolean(converted([NSNumber numberWithBool:YES]), true);
    expectBoolean(converted([NSNumber numberWithBool:NO]), false);
}

TEST_F(NumbersToHost, KeepTheLimitsOfTheirTypes) {
    const auto integer = [&](NSNumber* number) {
        const Object result = converted(number);
        EXPECT_EQ(result.variantType(), code::kInteger);
        return result.variantValue().asInteger();
    };
    constexpr auto kLeast = std::numeric_limits<long>::min();
    constexpr auto kMost = std::numeric_limits<long>::max();
    EXPECT_EQ(integer([NSNumber numberWithLong:kLeast]), kLeast);
    EXPECT_EQ(integer([NSNumber numberWithLong:kMost]), kMost);
    EXPECT_EQ(integer([NSNumber numberWithLongLong:-1]), -1);
    EXPECT_EQ(integer([NSNumber numberWithInt:std::numeric_limits<int>::min()]),
              std::numeric_limits<int>::min());
}

TEST_F(NumbersToHost, BeyondTheHostsUnsignedOnesLoseTheirHighBits) {
    const Object result = converted([NSNumber numberWithUnsignedLongLong:0xFFFFFFFF00000007ULL]);
    EXPECT_EQ(result.variantType(), code::kInt64);
    EXPECT_EQ(result.variantValue().asInteger(), 7);
}

TEST_F(NumbersToHost, ThatAreNoneStayNone) {
    const double results[] = {
        converted([NSNumber numberWithDouble:std::numeric_limits<double>::quiet_NaN()])
            .variantValue()
            .asDouble(),
        converted([NSNumber numberWithDouble:std::numeric_limits<double>::infinity()])
            .variantValue()
            .asDouble(),
    };
    EXPECT_NE(results[0], results[0]);
    EXPECT_EQ(results[1], std::numeric_limits<double>::infinity());
}

struct Maker {
    const char* name;
    const char* type;
};

void PrintTo(const Maker& row, std::ostream* out) {
    *out << row.name;
}

class MissingMaker : public ToHostTest, public testing::WithParamInterface<Maker> {};

TEST_P(MissingMaker, MakesTheNumberNil) {
    PluginHost::refuse(GetParam().name);
    EXPECT_TRUE(converted([TypedNumber numberOfType:GetParam().type]).isNull());
}

INSTANTIATE_TEST_SUITE_P(All, MissingMaker,
                         testing::Values(Maker{"BooleanToVariant", "c"}, Maker{"IntegerToVariant", "q"},
                                         Maker{"UInt32ToVariant", "Q"}, Maker{"SingleToVariant", "f"},
                                         Maker{"DoubleToVariant", "d"}));

} // namespace
