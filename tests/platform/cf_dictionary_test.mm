#include <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

#include <gtest/gtest.h>
#include <vector>

namespace {

CFMutableDictionaryRef newObjects() {
    return CFDictionaryCreateMutable(kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks,
                                     &kCFTypeDictionaryValueCallBacks);
}

NSString* ownString(const char* text) {
    return [[[NSMutableString alloc] initWithUTF8String:text] autorelease];
}

TEST(CFDictionary, DescribesObjectsAsTheyDoThemselves) {
    NSArray* const array = [NSArray arrayWithObject:@"a"];
    CFStringRef const description = kCFTypeDictionaryValueCallBacks.copyDescription(array);
    EXPECT_TRUE([(NSString*)description isEqual:[array description]]);
    CFRelease(description);
}

TEST(CFDictionary, KeepsPlainPointersAsTheyAre) {
    CFMutableDictionaryRef const pairs = CFDictionaryCreateMutable(nullptr, 0, nullptr, nullptr);
    int keys[3] = {};
    int values[3] = {};
    for (int index = 0; index < 3; ++index) {
        CFDictionarySetValue(pairs, &keys[index], &values[index]);
    }
    EXPECT_EQ(3, CFDictionaryGetCount(pairs));
    EXPECT_EQ(&values[1], CFDictionaryGetValue(pairs, &keys[1]));
    CFDictionarySetValue(pairs, &keys[1], &values[2]);
    EXPECT_EQ(&values[2], CFDictionaryGetValue(pairs, &keys[1]));
    EXPECT_EQ(3, CFDictionaryGetCount(pairs));
    CFDictionaryRemoveValue(pairs, &keys[1]);
    EXPECT_EQ(nullptr, CFDictionaryGetValue(pairs, &keys[1]));
    CFDictionaryRemoveValue(pairs, &keys[1]);
    EXPECT_EQ(2, CFDictionaryGetCount(pairs));
    CFRelease(pairs);
}

TEST(CFDictionary, PlainPointersNeitherRetainNorCompareObjects) {
    CFMutableDictionaryRef const pairs = CFDictionaryCreateMutable(nullptr, 0, nullptr, nullptr);
    NSString* const key = ownString("key");
    NSString* const equalKey = ownString("key");
    NSObject* const value = [[[NSObject alloc] init] autorelease];
    const NSUInteger keyCount = [key retainCount];
    const NSUInteger valueCount = [value retainCount];
    CFDictionarySetValue(pairs, key, value);
    EXPECT_EQ(keyCount, [key retainCount]);
    EXPECT_EQ(valueCount, [value retainCount]);
    EXPECT_EQ(nullptr, CFDictionaryGetValue(pairs, equalKey));
    EXPECT_EQ(value, CFDictionaryGetValue(pairs, key));
    CFRelease(pairs);
    EXPECT_EQ(keyCount, [key retainCount]);
    EXPECT_EQ(valueCount, [value retainCount]);
}

TEST(CFDictionary, NullIsAPlainPointer) {
    CFMutableDictionaryRef const pairs = CFDictionaryCreateMutable(nullptr, 0, nullptr, nullptr);
    int value = 0;
    CFDictionarySetValue(pairs, nullptr, &value);
    CFDictionarySetValue(pairs, &value, nullptr);
    EXPECT_EQ(2, CFDictionaryGetCount(pairs));
    EXPECT_EQ(&value, CFDictionaryGetValue(pairs, nullptr));
    EXPECT_EQ(nullptr, CFDictionaryGetValue(pairs, &value));
    CFRelease(pairs);
}

TEST(CFDictionary, ObjectsAreRetainedAndComparedByEquality) {
    CFMutableDictionaryRef const pairs = newObjects();
    NSString* const key = ownString("key");
    NSObject* const value = [[[NSObject alloc] init] autorelease];
    NSObject* const other = [[[NSObject alloc] init] autorelease];
    CFDictionarySetValue(pairs, key, value);
    EXPECT_EQ(2U, [key retainCount]);
    EXPECT_EQ(2U, [value retainCount]);
    EXPECT_EQ(value, CFDictionaryGetValue(pairs, ownString("key")));
    CFDictionarySetValue(pairs, ownString("key"), other);
    EXPECT_EQ(1U, [value retainCount]);
    EXPECT_EQ(2U, [other retainCount]);
    EXPECT_EQ(1, CFDictionaryGetCount(pairs));
    CFDictionarySetValue(pairs, key, other);
    EXPECT_EQ(2U, [other retainCount]) << "the same value again";
    CFDictionaryRemoveValue(pairs, ownString("key"));
    EXPECT_EQ(1U, [key retainCount]);
    EXPECT_EQ(1U, [other retainCount]);
    CFDictionarySetValue(pairs, key, value);
    CFRelease(pairs);
    EXPECT_EQ(1U, [key retainCount]);
    EXPECT_EQ(1U, [value retainCount]);
}

TEST(CFDictionary, IsAFoundationDictionary) {
    CFMutableDictionaryRef const pairs = newObjects();
    NSMutableDictionary* const dictionary = (NSMutableDictionary*)pairs;
    [dictionary setObject:@"1" forKey:@"one"];
    CFDictionarySetValue(pairs, @"two", @"2");
    EXPECT_TRUE([dictionary isKindOfClass:[NSMutableDictionary class]]);
    EXPECT_EQ(2U, [dictionary count]);
    NSDictionary* const expected =
        [NSDictionary dictionaryWithObjectsAndKeys:@"1", @"one", @"2", @"two", nil];
    EXPECT_TRUE([dictionary isEqual:expected]);
    EXPECT_EQ(2U, [[dictionary allKeys] count]);
    [dictionary removeObjectForKey:@"one"];
    EXPECT_EQ(1, CFDictionaryGetCount(pairs));
    NSMutableDictionary* const copy = [[dictionary mutableCopy] autorelease];
    EXPECT_TRUE([copy isEqual:dictionary]);
    [copy setObject:@"3" forKey:@"three"];
    EXPECT_EQ(1, CFDictionaryGetCount(pairs));
    CFRelease(pairs);
}

TEST(CFDictionary, WorksOnFoundationsDictionaries) {
    NSMutableDictionary* const dictionary = [NSMutableDictionary dictionary];
    auto const pairs = (CFMutableDictionaryRef)dictionary;
    CFDictionarySetValue(pairs, @"one", @"1");
    EXPECT_EQ(1, CFDictionaryGetCount(pairs));
    EXPECT_TRUE([(id)CFDictionaryGetValue(pairs, @"one") isEqual:@"1"]);
    EXPECT_EQ(nullptr, CFDictionaryGetValue(pairs, @"two"));
    CFDictionaryRemoveValue(pairs, @"one");
    EXPECT_EQ(0U, [dictionary count]);
    NSDictionary* const constant = [NSDictionary dictionaryWithObject:@"1" forKey:@"one"];
    EXPECT_EQ(1, CFDictionaryGetCount((CFDictionaryRef)constant));
}

// ---- callbacks of the caller's own

std::vector<const void*> released;
CFMutableDictionaryRef reentered = nullptr;

CFHashCode hashOfNumber(const void* value) {
    return static_cast<CFHashCode>(*static_cast<const int*>(value));
}

Boolean areNumbersEqual(const void* left, const void* right) {
    return *static_cast<const int*>(left) == *static_cast<const int*>(right) ? 1 : 0;
}

void noteRelease(CFAllocatorRef /*allocator*/, const void* value) {
    released.push_back(value);
    if (reentered != nullptr) {
        CFDictionaryRemoveValue(reentered, value);
    }
}

TEST(CFDictionary, FollowsItsOwnCallBacks) {
    CFDictionaryKeyCallBacks keys = {0, nullptr, noteRelease, nullptr, areNumbersEqual, hashOfNumber};
    CFMutableDictionaryRef const pairs = CFDictionaryCreateMutable(nullptr, 0, &keys, nullptr);
    keys.hash = nullptr; // they are copied
    const int one = 1;
    const int alsoOne = 1;
    released.clear();
    CFDictionarySetValue(pairs, &one, &one);
    EXPECT_EQ(&one, CFDictionaryGetValue(pairs, &alsoOne));
    CFDictionarySetValue(pairs, &alsoOne, &alsoOne);
    EXPECT_EQ(1, CFDictionaryGetCount(pairs));
    EXPECT_TRUE(released.empty()) << "the first key stays";
    CFRelease(pairs);
    EXPECT_EQ(std::vector<const void*>{&one}, released);
}

TEST(CFDictionary, ACallBackMayComeBackToTheDictionary) {
    const CFDictionaryValueCallBacks values = {0, nullptr, noteRelease, nullptr, nullptr};
    CFMutableDictionaryRef const pairs = CFDictionaryCreateMutable(nullptr, 0, nullptr, &values);
    int one = 0;
    int two = 0;
    released.clear();
    reentered = pairs;
    CFDictionarySetValue(pairs, &one, &two);
    CFDictionarySetValue(pairs, &two, &one);
    CFDictionaryRemoveValue(pairs, &one); // releases &two, whose pair goes too, which releases &one
    EXPECT_EQ(0, CFDictionaryGetCount(pairs));
    EXPECT_EQ((std::vector<const void*>{&two, &one}), released);
    reentered = nullptr;
    CFRelease(pairs);
}

} // namespace
