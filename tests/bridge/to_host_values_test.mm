// Structs in Cocoa's values, and carriers of host objects.

#include "tests/bridge/to_host_fixture.h"

#include "tests/support/fresh_process.h"

#include <array>
#include <bit>

// A value that says it holds a given C type.
@interface TypedValue : NSValue {
    const char* type;
}
+ (TypedValue*)valueOfType:(const char*)type;
@end

@implementation TypedValue
+ (TypedValue*)valueOfType:(const char*)type {
    TypedValue* value = [NSAllocateObject(self, 0, nullptr) autorelease];
    value->type = type;
    return value;
}
- (const char*)objCType {
    return type;
}
@end

namespace {

using zqm::host::Object;
using zqm::support::inFreshProcess;

class ValuesToHost : public ToHostTest {
protected:
    void define(const char* hostClass) { host->defineClass({.name = hostClass, .dataSize = 32}); }
};

using Doubles = std::array<double, 4>;
using Words = std::array<std::uint64_t, 2>;

TEST_F(ValuesToHost, RectIsAnObjectWithItsFields) {
    define("NSRectZQM");
    NSValue* value = [NSValue valueWithRect:NSMakeRect(1.5, -2, 3, 4)];
    const Object result = converted(value);
    EXPECT_EQ(result.className(), "NSRectZQM");
    EXPECT_EQ(result.dataAs<Doubles>(), (Doubles{1.5, -2, 3, 4}));
    EXPECT_FALSE(converted(value) == result) << "a new one each time";
    EXPECT_FALSE(isKnown(value));
}

TEST_F(ValuesToHost, SizeIsAnObjectWithItsFields) {
    define("NSSizeZQM");
    const Object result = converted([NSValue valueWithSize:NSMakeSize(5, 6.25)]);
    EXPECT_EQ(result.className(), "NSSizeZQM");
    EXPECT_EQ(result.dataAs<Doubles>(), (Doubles{5, 6.25, 0, 0}));
}

TEST_F(ValuesToHost, PointIsAnObjectWithItsFields) {
    define("NSPointZQM");
    const Object result = converted([NSValue valueWithPoint:NSMakePoint(-7, 8)]);
    EXPECT_EQ(result.className(), "NSPointZQM");
    EXPECT_EQ(result.dataAs<Doubles>(), (Doubles{-7, 8, 0, 0}));
}

TEST_F(ValuesToHost, RangeIsAnObjectWithItsFields) {
    define("NSRangeZQM");
    const Object result = converted([NSValue valueWithRange:NSMakeRange(9, NSNotFound)]);
    EXPECT_EQ(result.className(), "NSRangeZQM");
    EXPECT_EQ(result.dataAs<Words>(), (Words{9, static_cast<std::uint64_t>(NSNotFound)}));
}

TEST_F(ValuesToHost, AreNilWithoutTheirHostClassEvenIfTheirOwnHasOne) {
    defineWrapper("NSValueZQM");
    defineWrapper("NSObjectZQM");
    EXPECT_TRUE(converted([NSValue valueWithRect:NSMakeRect(1, 2, 3, 4)]).isNull());
    EXPECT_TRUE(converted([NSValue valueWithSize:NSMakeSize(1, 2)]).isNull());
    EXPECT_TRUE(converted([NSValue valueWithPoint:NSMakePoint(1, 2)]).isNull());
    EXPECT_TRUE(converted([NSValue valueWithRange:NSMakeRange(1, 2)]).isNull());
}

TEST_F(ValuesToHost, OfUnknownStructsAreNil) {
    defineWrapper("NSValueZQM");
    defineWrapper("TypedValueZQM");
    EXPECT_TRUE(converted([NSValue valueWithPointer:this]).isNull());
    EXPECT_TRUE(converted([NSValue valueWithNonretainedObject:@"x"]).isNull());
    for (const char* type : {"{?=qq}", "{?=qqqq}", "", "{CGVector=dd}", "@"}) {
        EXPECT_TRUE(converted([TypedValue valueOfType:type]).isNull()) << type;
    }
}

struct Time {
    const char* type;
    const char* method;
};

void PrintTo(const Time& time, std::ostream* out) {
    *out << time.method;
}

constexpr Time kTimes[] = {
    {"{?=qqq}", "QTTimeValueZQM"},
    {"{?={?=qqq}{?=qqq}}", "QTTimeRangeValueZQM"},
    {"{?=qiIq}", "CMTimeValueZQM"},
    {"{?={?=qiIq}{?=qiIq}}", "CMTimeRangeValueZQM"},
    {"{?={?={?=qiIq}{?=qiIq}}{?={?=qiIq}{?=qiIq}}}", "CMTimeMappingValueZQM"},
};

class TimesToHost : public ToHostTest, public testing::WithParamInterface<Time> {};

TEST_P(TimesToHost, AreNilWithoutTheSibling) {
    defineWrapper("NSValueZQM");
    EXPECT_TRUE(converted([TypedValue valueOfType:GetParam().type]).isNull());
}

SEL lastAsked = nullptr;
REALobject timeObject(id, SEL method) {
    lastAsked = method;
    return REALnewInstance("Date");
}

TEST_P(TimesToHost, AreWhatTheSiblingMakesOfThem) {
    inFreshProcess([&] {
        for (const Time& time : kTimes) {
            class_addMethod([NSValue class], sel_registerName(time.method), std::bit_cast<IMP>(&timeObject),
                            "^v@:");
        }
        const Object result = converted([TypedValue valueOfType:GetParam().type]);
        EXPECT_EQ(result.className(), "Date");
        EXPECT_STREQ(sel_getName(lastAsked), GetParam().method);
        EXPECT_EQ(host->ledger().objects.locks, 1);
        EXPECT_TRUE(converted([TypedValue valueOfType:"{?=qi}"]).isNull());
    });
}

INSTANTIATE_TEST_SUITE_P(All, TimesToHost, testing::ValuesIn(kTimes));

REALobject carried = nullptr;
REALobject unwrapCarried(id, SEL) {
    if (carried != nullptr) {
        REALLockObject(carried);
    }
    return carried;
}

TEST_F(ValuesToHost, CarrierIsTheHostObjectItCarries) {
    inFreshProcess([&] {
        defineWrapper("ZQMREALobjectWrapperZQM");
        converted([newCounted([NSObject class]) autorelease]); // asked before the class has come
        Class const carrier = cocoaClass("ZQMREALobjectWrapper");
        class_addMethod(carrier, sel_registerName("unwrap"), std::bit_cast<IMP>(&unwrapCarried), "^v@:");
        id object = [newCounted(carrier) autorelease];
        const Object owned = host->date(2020);
        carried = owned.handle();
        EXPECT_EQ(converted(object), owned);
        carried = nullptr;
        EXPECT_TRUE(converted(object).isNull()) << "never the fallback";
    });
}

} // namespace
