// Foundation's own kinds of values as host values.

#include "tests/bridge/to_host_fixture.h"

#include "plugin/host_interface.h"

#include <array>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using zqm::host::Array;
using zqm::host::Dictionary;
using zqm::host::MemoryBlock;
using zqm::host::Object;
using zqm::host::Value;

class BasicsToHost : public ToHostTest {};

TEST_F(BasicsToHost, NilAndNullAreNil) {
    EXPECT_EQ(NewVariantFromNSObject(nil), nullptr);
    EXPECT_EQ(NewVariantFromNSObject(reinterpret_cast<NSObject*>([NSNull null])), nullptr);
}

TEST_F(BasicsToHost, ObjectWithAHostObjectComesBackAsThat) {
    const std::array<id, 6> objects{@"text",
                                    [NSNumber numberWithInt:5],
                                    [NSArray array],
                                    [NSURL URLWithString:@"http://example.org/"],
                                    [NSValue valueWithRange:NSMakeRange(1, 2)],
                                    [[[NSObject alloc] init] autorelease]};
    for (id object : objects) {
        const Object owner = host->date(2020);
        CFDictionarySetValue(instances, object, owner.handle());
        const auto before = host->ledger();
        {
            const Object result = converted(object);
            EXPECT_EQ(result, owner) << [[object description] UTF8String];
            EXPECT_EQ(host->ledger().objects.locks, before.objects.locks + 1);
        }
        CFDictionaryRemoveValue(instances, object);
    }
}

TEST_F(BasicsToHost, TruthValuesWithAHostObjectComeBackAsThat) {
    const Object owner = host->date(2020);
    CFDictionarySetValue(instances, kCFBooleanTrue, owner.handle());
    EXPECT_EQ(converted((id)kCFBooleanTrue), owner);
    CFDictionaryRemoveValue(instances, kCFBooleanTrue);
}

TEST_F(BasicsToHost, NullIsNilEvenWithAHostObject) {
    const Object owner = host->date(2020);
    CFDictionarySetValue(instances, [NSNull null], owner.handle());
    EXPECT_EQ(NewVariantFromNSObject(reinterpret_cast<NSObject*>([NSNull null])), nullptr);
    CFDictionaryRemoveValue(instances, [NSNull null]);
}

// Given without a lock it would end in the caller's hands.
TEST_F(BasicsToHost, HostObjectThatCantBeLockedIsNil) {
    PluginHost::refuse("REALLockObject");
    const Object owner = host->date(2020);
    CFDictionarySetValue(instances, @"text", owner.handle());
    EXPECT_EQ(NewVariantFromNSObject(@"text"), nullptr);
    CFDictionaryRemoveValue(instances, @"text");
}

TEST_F(BasicsToHost, ConversionNeedsNoInstancesDictionary) {
    CFMutableDictionaryRef const kept = std::exchange(instances, nullptr);
    EXPECT_EQ(converted(@"text").variantValue().asText(), "text");
    instances = kept;
}

TEST_F(BasicsToHost, StringsAreStringVariants) {
    for (const char* text : {"", "a", "Grüße, 世界 \U0001F600", "two\nlines"}) {
        const Object result = converted([NSString stringWithUTF8String:text]);
        EXPECT_EQ(result.variantType(), code::kString);
        EXPECT_EQ(result.variantValue().asText(), text);
    }
    const Object mutableOne = converted([NSMutableString stringWithString:@"abc"]);
    EXPECT_EQ(mutableOne.variantValue().asText(), "abc");
}

TEST_F(BasicsToHost, TextThatIsNoneIsAnEmptyString) {
    const unichar half = 0xD83D;
    CFStringRef text = CFStringCreateWithCharacters(nullptr, &half, 1);
    ASSERT_EQ(CFStringGetLength(text), 1);
    const Object result = converted((id)text);
    CFRelease(text);
    EXPECT_EQ(result.variantType(), code::kString);
    EXPECT_EQ(result.variantValue().asText(), "");
}

TEST_F(BasicsToHost, StringWithoutAMakerOfVariantsIsNil) {
    PluginHost::refuse("StringToVariant");
    EXPECT_TRUE(converted(@"text").isNull());
}

TEST_F(BasicsToHost, AddressThatIsNoFileIsAString) {
    for (NSString* text : {@"http://example.org/a%20b?c#d", @"mailto:someone@example.org"}) {
        const Object result = converted([NSURL URLWithString:text]);
        EXPECT_EQ(result.variantType(), code::kString);
        EXPECT_STREQ(result.variantValue().asText().c_str(), [text UTF8String]);
    }
}

TEST_F(BasicsToHost, RelativeAddressIsAStringInFull) {
    NSURL* base = [NSURL URLWithString:@"http://example.org/a/"];
    EXPECT_EQ(converted([NSURL URLWithString:@"b/c" relativeToURL:base]).variantValue().asText(),
              "http://example.org/a/b/c");
}

REALobject itemOfParent(const FSRef*, const HFSUniStr255* name) {
    return name->length != 0 ? REALnewInstance("Date") : nullptr; // any object of the host will do
}

TEST_F(BasicsToHost, AddressOfAFileIsAnItem) {
    PluginHost::replace("REALFolderItemFromParentFSRef", itemOfParent);
    const Object result = converted([NSURL fileURLWithPath:@"/tmp/no such file"]);
    EXPECT_EQ(result.className(), "Date");
}

TEST_F(BasicsToHost, AddressOfAFileThatHasNoItemIsAString) {
    const Object result = converted([NSURL fileURLWithPath:@"/no such folder/file"]);
    EXPECT_EQ(result.variantType(), code::kString);
    EXPECT_EQ(result.variantValue().asText(), "file:///no%20such%20folder/file");
}

TEST_F(BasicsToHost, DataIsAMemoryBlock) {
    const Object result = converted([NSData dataWithBytes:"a\0b" length:3]);
    EXPECT_EQ(MemoryBlock(result).bytes(), std::string("a\0b", 3));
    EXPECT_TRUE(converted([NSData data]).isNull());
}

TEST_F(BasicsToHost, ArraysAreArraysOfObjects) {
    NSArray* inner = [NSArray arrayWithObjects:@"x", [NSNull null], nil];
    NSArray* outer =
        [NSArray arrayWithObjects:@"first", inner, [NSArray array], [NSNumber numberWithShort:7], nil];
    const Array result(converted(outer));
    ASSERT_EQ(result.size(), 4U);
    EXPECT_EQ(result.elementType(), zqm::host::ElementType::Object);
    EXPECT_EQ(result.at(0).asText(), "first");
    const Array second(result.at(1).asObject());
    ASSERT_EQ(second.size(), 2U);
    EXPECT_EQ(second.at(0).asText(), "x");
    EXPECT_TRUE(second.at(1).isNull());
    EXPECT_EQ(Array(result.at(2).asObject()).size(), 0U);
    EXPECT_EQ(result.at(3).asInteger(), 7);
}

TEST_F(BasicsToHost, EmptyArrayIsAnArray) {
    for (id empty : {static_cast<id>([NSArray array]), static_cast<id>([NSSet set])}) {
        const Object result = converted(empty);
        ASSERT_FALSE(result.isNull());
        EXPECT_EQ(Array(result).size(), 0U);
        EXPECT_EQ(Array(result).elementType(), zqm::host::ElementType::Object);
    }
}

TEST_F(BasicsToHost, SetsAreArrays) {
    const Array result(converted([NSSet setWithObjects:@"a", @"b", @"c", nil]));
    std::vector<std::string> texts;
    for (const Value& value : result.values()) {
        texts.push_back(value.asText());
    }
    EXPECT_THAT(texts, testing::UnorderedElementsAre("a", "b", "c"));
}

TEST_F(BasicsToHost, ArrayThatTheHostCantMakeIsNil) {
    host->entryPoints().failEveryCall("RuntimeArrayCreateSingleDimBoundedArray");
    EXPECT_TRUE(converted([NSArray arrayWithObject:@"a"]).isNull());
    EXPECT_TRUE(converted([NSSet setWithObject:@"a"]).isNull());
}

// Rather than one that has lost its elements.
TEST_F(BasicsToHost, ArrayOfAHostThatCantInsertIsNil) {
    PluginHost::refuse("PluginObjectArrayInsertProc");
    EXPECT_TRUE(converted([NSArray arrayWithObject:@"a"]).isNull());
    EXPECT_TRUE(converted([NSSet setWithObject:@"a"]).isNull());
    const Array empty(converted([NSArray array]));
    EXPECT_EQ(empty.size(), 0U);
}

TEST_F(BasicsToHost, ElementThatHasNoCounterpartIsNil) {
    const Array result(
        converted([NSArray arrayWithObjects:@"a", [[[NSObject alloc] init] autorelease], @"b", nil]));
    ASSERT_EQ(result.size(), 3U);
    EXPECT_TRUE(result.at(1).isNull());
    EXPECT_EQ(result.at(2).asText(), "b");
}

TEST_F(BasicsToHost, DictionaryIsADictionary) {
    const Dictionary result(converted([NSDictionary dictionaryWithObject:[NSArray arrayWithObject:@"v"]
                                                                  forKey:@"k"]));
    ASSERT_EQ(result.count(), 1U);
    EXPECT_EQ(Array(result.value("k").asObject()).at(0).asText(), "v");
}

} // namespace
