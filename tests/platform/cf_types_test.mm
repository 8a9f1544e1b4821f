#include <CoreText/CoreText.h>
#import <Foundation/Foundation.h>
#include <zqmplatform/type_instances.h>

#include "tests/platform/early_booleans.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

// What only CoreFoundation's own objects answer.
@protocol OwnType
- (CFTypeID)_cfTypeID;
@end

namespace {

struct Kind {
    const char* name;
    CFTypeID (*type)(void);
    bool isFoundations;
};

void PrintTo(const Kind& kind, std::ostream* out) {
    *out << kind.name;
}

const Kind kKinds[] = {
    {"CFArray", CFArrayGetTypeID, true},
    {"CFAttributedString", CFAttributedStringGetTypeID, true},
    {"CFBag", CFBagGetTypeID, false},
    {"CFBoolean", CFBooleanGetTypeID, true},
    {"CFBundle", CFBundleGetTypeID, false},
    {"CFCharacterSet", CFCharacterSetGetTypeID, true},
    {"CFData", CFDataGetTypeID, true},
    {"CFDate", CFDateGetTypeID, true},
    {"CFDictionary", CFDictionaryGetTypeID, true},
    {"CFError", CFErrorGetTypeID, true},
    {"CFNumber", CFNumberGetTypeID, true},
    {"CFSet", CFSetGetTypeID, true},
    {"CFString", CFStringGetTypeID, true},
    {"CFTimeZone", CFTimeZoneGetTypeID, true},
    {"CFURL", CFURLGetTypeID, true},
    {"CFUUID", CFUUIDGetTypeID, false},
    {"CTFont", CTFontGetTypeID, false},
    {"CTFontCollection", CTFontCollectionGetTypeID, false},
    {"CTFrame", CTFrameGetTypeID, false},
    {"CTFramesetter", CTFramesetterGetTypeID, false},
    {"CTGlyphInfo", CTGlyphInfoGetTypeID, false},
    {"CTLine", CTLineGetTypeID, false},
    {"CTParagraphStyle", CTParagraphStyleGetTypeID, false},
    {"CTRun", CTRunGetTypeID, false},
    {"CTRunDelegate", CTRunDelegateGetTypeID, false},
    {"CTTypesetter", CTTypesetterGetTypeID, false},
};

CFTypeID typeOf(id object) {
    return CFGetTypeID((CFTypeRef)object);
}

class TypeOf : public testing::TestWithParam<Kind> {};

TEST_P(TypeOf, InstanceIsThatOfItsKind) {
    const CFTypeID type = GetParam().type();
    EXPECT_LE(1U, type);
    CFTypeRef const instance = ZQMPlatformCreateInstanceOfType(type);
    ASSERT_NE(nullptr, instance);
    EXPECT_EQ(type, CFGetTypeID(instance));
    const bool answers = [(id)instance respondsToSelector:@selector(_cfTypeID)];
    EXPECT_EQ(!GetParam().isFoundations, answers);
    if (answers) {
        EXPECT_EQ(type, [(id<OwnType>)instance _cfTypeID]);
        EXPECT_EQ(1U, [(id)instance retainCount]);
    }
    CFRelease(instance);
}

INSTANTIATE_TEST_SUITE_P(All, TypeOf, testing::ValuesIn(kKinds),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(CFTypeID, IsOfOneKindOnly) {
    std::set<CFTypeID> types;
    for (const Kind& kind : kKinds) {
        EXPECT_TRUE(types.insert(kind.type()).second) << kind.name;
    }
}

TEST(CFTypeID, NumbersOfNoKindHaveNoInstance) {
    EXPECT_EQ(nullptr, ZQMPlatformCreateInstanceOfType(0));
    EXPECT_EQ(nullptr, ZQMPlatformCreateInstanceOfType(std::size(kKinds) + 1));
    EXPECT_EQ(nullptr, ZQMPlatformCreateInstanceOfType(static_cast<CFTypeID>(-1)));
}

TEST(CFGetTypeID, KnowsEverySubclass) {
    EXPECT_EQ(CFStringGetTypeID(), typeOf(@"constant"));
    EXPECT_EQ(CFStringGetTypeID(), typeOf([NSMutableString string]));
    EXPECT_EQ(CFStringGetTypeID(), typeOf([NSString stringWithUTF8String:"ü"]));
    const UniChar lone = 0xD800;
    CFStringRef const odd = CFStringCreateWithCharacters(nullptr, &lone, 1);
    EXPECT_EQ(CFStringGetTypeID(), CFGetTypeID(odd));
    CFRelease(odd);
    CFDictionaryRef const dictionary = CFDictionaryCreateMutable(nullptr, 0, nullptr, nullptr);
    EXPECT_EQ(CFDictionaryGetTypeID(), CFGetTypeID(dictionary));
    CFRelease(dictionary);
    EXPECT_EQ(CFArrayGetTypeID(), typeOf([NSMutableArray array]));
    EXPECT_EQ(CFDataGetTypeID(), typeOf([NSMutableData data]));
    EXPECT_EQ(CFSetGetTypeID(), typeOf([NSCountedSet set]));
    EXPECT_EQ(CFDateGetTypeID(), typeOf([NSCalendarDate date]));
    EXPECT_EQ(CFNumberGetTypeID(), typeOf([NSNumber numberWithDouble:0.5]));
    EXPECT_EQ(CFNumberGetTypeID(), typeOf([NSDecimalNumber one]));
    EXPECT_EQ(CFURLGetTypeID(), typeOf([NSURL fileURLWithPath:@"/"]));
}

TEST(CFGetTypeID, TellsTruthValuesFromNumbers) {
    EXPECT_EQ(CFBooleanGetTypeID(), typeOf([NSNumber numberWithBool:YES]));
    EXPECT_EQ(CFBooleanGetTypeID(), typeOf([NSNumber numberWithBool:NO]));
    EXPECT_EQ(CFNumberGetTypeID(), typeOf([NSNumber numberWithInt:1]));
    EXPECT_EQ(CFNumberGetTypeID(), typeOf([NSNumber numberWithInt:0]));
    EXPECT_EQ(CFNumberGetTypeID(), typeOf([NSNumber numberWithChar:1]));
}

TEST(CFGetTypeID, OfOtherObjectsIsZero) {
    EXPECT_EQ(0U, typeOf([[[NSObject alloc] init] autorelease]));
    EXPECT_EQ(0U, typeOf([NSNull null]));
    EXPECT_EQ(0U, typeOf([NSValue valueWithPointer:nullptr]));
    EXPECT_EQ(0U, typeOf([NSUUID UUID]));
    EXPECT_EQ(0U, typeOf([NSProcessInfo processInfo]));
    EXPECT_EQ(0U, typeOf((id)[NSString class]));
}

TEST(CFGetTypeIDDeathTest, OfNullEndsTheProcess) {
    EXPECT_DEATH(CFGetTypeID(nullptr), "CFGetTypeID was called with null");
}

TEST(CFBoolean, IsFoundationsTruthValue) {
    EXPECT_EQ([NSNumber numberWithBool:YES], (id)kCFBooleanTrue);
    EXPECT_EQ([NSNumber numberWithBool:NO], (id)kCFBooleanFalse);
    EXPECT_EQ([[[NSNumber alloc] initWithBool:YES] autorelease], (id)kCFBooleanTrue);
    EXPECT_TRUE([(id)kCFBooleanTrue boolValue]);
    EXPECT_FALSE([(id)kCFBooleanFalse boolValue]);
}

TEST(CFBoolean, IsThereWhenALibraryIsLoaded) {
    EXPECT_EQ(kCFBooleanTrue, booleanSeenWhenLoaded(1));
    EXPECT_EQ(kCFBooleanFalse, booleanSeenWhenLoaded(0));
    EXPECT_NE(nullptr, booleanSeenWhenLoaded(0));
}

} // namespace
