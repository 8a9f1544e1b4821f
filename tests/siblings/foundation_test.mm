// The family's library for Foundation's classes: what hosts and other plugins find in it.

#include "plugin/autorelease_pool.h"
#include "plugin/sibling_methods.h"
#include "tests/bridge/counted_objects.h"
#include "tests/support/fresh_process.h"

#include <zqmplatform/type_instances.h>

#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <zqmhost/zqmhost.h>

// As the bridge declares it.
@protocol Carrier
+ (id)wrap:(REALobject)object;
- (REALobject)unwrap;
@end

namespace {

using testing::ElementsAre;
using testing::IsSupersetOf;
using zqm::host::CallError;
using zqm::host::Object;
using zqm::host::Runtime;
using zqm::host::Value;

// The classes whose objects begin with an object that they retain, and nothing of their own.
constexpr const char* kWrappers[] = {
    "NSAttributedStringZQM",   "NSBundleZQM",    "NSCalendarZQM", "NSCharacterSetZQM",    "NSFileHandleZQM",
    "NSFileManagerZQM",        "NSIndexSetZQM",  "NSLocaleZQM",   "NSMutableIndexSetZQM", "NSNotificationZQM",
    "NSNotificationCenterZQM", "NSPredicateZQM", "NSTimeZoneZQM", "NSUserDefaultsZQM",
};

class FoundationTest : public testing::Test {
public:
    ~FoundationTest() override {
        pool.reset();
        for (const zqm::host::Report& report : host.reports()) {
            ADD_FAILURE() << nameOf(report.kind) << ": " << report.text;
        }
        EXPECT_TRUE(host.takeRaised().empty());
        EXPECT_EQ(host.ledger(), zqm::host::Ledger());
        EXPECT_EQ(countedAlive(), 0);
        EXPECT_EQ(CFDictionaryGetCount(pairs()), 0);
    }

protected:
    FoundationTest() {
        host.load(ZQM_FOUNDATION);
        pool.emplace();
    }

    static CFMutableDictionaryRef pairs() { return [NSException GetInstancesDictionaryZQM]; }

    // As the bridge makes it.
    Object wrapperOf(id object, const char* hostClass) {
        Object wrapper = host.create(hostClass);
        EXPECT_EQ(wrapper.dataAs<id>(), nil);
        wrapper.dataAs<id>() = [object retain];
        return wrapper;
    }
    static void enter(id object, const Object& wrapper) {
        CFDictionarySetValue(pairs(), object, wrapper.handle());
    }

    Runtime host;
    std::optional<AutoreleasePool> pool;
};

TEST_F(FoundationTest, BringsItsClasses) {
    const std::vector<std::string> names = host.classNames();
    EXPECT_THAT(names, IsSupersetOf({"NSExceptionZQM", "NSErrorZQM", "CFObjectZQM", "CFUUIDZQM", "CFBagZQM",
                                     "NSPointZQM", "NSSizeZQM", "NSRectZQM", "NSRangeZQM"}));
    for (const char* wrapper : kWrappers) {
        EXPECT_THAT(names, testing::Contains(wrapper));
    }
    EXPECT_EQ(host.announcedRevision(), 13);
}

TEST_F(FoundationTest, StandsBesideTheSpeechClasses) {
    host.load(ZQM_PLUGIN);
    EXPECT_THAT(host.classNames(), IsSupersetOf({"NSSpeechSynthesizerZQM", "NSErrorZQM"}));
    const Object synthesizer = host.construct("NSSpeechSynthesizerZQM");
    EXPECT_EQ(CFDictionaryGetCount(pairs()), 1);
}

class Wrappers : public FoundationTest, public testing::WithParamInterface<const char*> {};

TEST_P(Wrappers, GiveTheirObjectUpWhenTheyEnd) {
    id object = newCounted([NSObject class]);
    Object wrapper = wrapperOf(object, GetParam());
    enter(object, wrapper);
    [object release];
    EXPECT_EQ(countedAlive(), 1);
    EXPECT_EQ(wrapper.call("Description").asText(), [[object description] UTF8String]);
    wrapper.reset();
    EXPECT_EQ(countedAlive(), 0);
    EXPECT_EQ(CFDictionaryGetCount(pairs()), 0);
}

TEST_P(Wrappers, LeaveThePairOfAnotherWrapper) {
    id object = [newCounted([NSObject class]) autorelease];
    Object first = wrapperOf(object, GetParam());
    enter(object, first);
    wrapperOf(object, GetParam()).reset();
    EXPECT_EQ(CFDictionaryGetValue(pairs(), object), first.handle());
    first.reset();
    EXPECT_EQ(CFDictionaryGetValue(pairs(), object), nullptr);
}

TEST_P(Wrappers, MayStayEmpty) {
    Object empty = host.create(GetParam());
    EXPECT_TRUE(empty.call("Description").isNull());
}

TEST_P(Wrappers, CantBeConstructedByPrograms) {
    Object made = host.create(GetParam());
    EXPECT_THROW(made.call("Constructor"), CallError);
}

INSTANTIATE_TEST_SUITE_P(All, Wrappers, testing::ValuesIn(kWrappers),
                         [](const auto& row) { return std::string(row.param); });

TEST_F(FoundationTest, ErrorTellsWhatItIs) {
    NSDictionary* info = [NSDictionary dictionaryWithObject:@"it broke" forKey:NSLocalizedDescriptionKey];
    NSError* error = [NSError errorWithDomain:@"domain" code:-7 userInfo:info];
    Object wrapper = wrapperOf(error, "NSErrorZQM");
    EXPECT_EQ(wrapper.call("Code").asInteger(), -7);
    EXPECT_EQ(wrapper.call("Domain").asText(), "domain");
    EXPECT_EQ(wrapper.call("LocalizedDescription").asText(), "it broke");
    EXPECT_EQ(wrapper.call("Description").asText(), [[error description] UTF8String]);
}

TEST_F(FoundationTest, EmptyErrorAnswersNeutrally) {
    Object empty = host.create("NSErrorZQM");
    EXPECT_EQ(empty.call("Code").asInteger(), 0);
    EXPECT_TRUE(empty.call("Domain").isNull());
    EXPECT_TRUE(empty.call("LocalizedDescription").isNull());
}

TEST_F(FoundationTest, ExceptionTellsWhatItIs) {
    [NSException PrepareNSExceptionZQM];
    NSException* exception = [NSException exceptionWithName:@"Broken" reason:@"it broke" userInfo:nil];
    Object made = host.adopt([NSException NewNSExceptionZQM:exception]);
    EXPECT_EQ(made.className(), "NSExceptionZQM");
    EXPECT_TRUE(made.isA("RuntimeException"));
    EXPECT_EQ(made.get("Message").asText(), "it broke");
    EXPECT_EQ(made.call("Name").asText(), "Broken");
    EXPECT_EQ(made.call("Reason").asText(), "it broke");
    EXPECT_EQ([exception retainCount], 2U);
    made.reset();
    EXPECT_EQ([exception retainCount], 1U);
}

TEST_F(FoundationTest, ExceptionWithAnEmptyReasonHasNoMessage) {
    NSException* exception = [NSException exceptionWithName:@"Broken" reason:@"" userInfo:nil];
    Object made = host.adopt([NSException NewNSExceptionZQM:exception]);
    EXPECT_EQ(made.get("Message").asText(), "");
    EXPECT_EQ(made.call("Name").asText(), "Broken");
}

TEST_F(FoundationTest, ExceptionOfAHostThatMakesNoObjectsIsNone) {
    host.entryPoints().failEveryCall("PluginNewInstance");
    NSException* exception = [NSException exceptionWithName:@"Broken" reason:@"r" userInfo:nil];
    EXPECT_EQ([NSException NewNSExceptionZQM:exception], nullptr);
    EXPECT_EQ([exception retainCount], 1U);
    host.entryPoints().failNone();
}

TEST_F(FoundationTest, InstancesDictionaryIsOneAndHoldsPlainPointers) {
    EXPECT_EQ([NSException GetInstancesDictionaryZQM], pairs());
    id object = [newCounted([NSObject class]) autorelease];
    const Object owner = host.create("NSErrorZQM");
    enter(object, owner);
    EXPECT_EQ([object retainCount], 1U);
    EXPECT_EQ(host.ledger().objects.locks, 1);
    CFDictionaryRemoveValue(pairs(), object);
}

using Words = std::array<std::uint64_t, 3>;

TEST_F(FoundationTest, CoreFoundationClassesCarryTheMarker) {
    for (const char* name : {"CFObjectZQM", "CFUUIDZQM", "CFBagZQM"}) {
        Object made = host.create(name);
        EXPECT_TRUE(made.isA("CFObjectZQM"));
        EXPECT_EQ(made.dataAs<Words>()[0], 0U) << name;
        EXPECT_EQ(made.dataAs<Words>()[2], 0x52424346U) << name;
    }
}

TEST_F(FoundationTest, CoreFoundationObjectIsGivenUpWhenItsWrapperEnds) {
    for (const char* name : {"CFObjectZQM", "CFUUIDZQM", "CFBagZQM"}) {
        CFTypeRef uuid = ZQMPlatformCreateInstanceOfType(CFUUIDGetTypeID());
        Object wrapper = wrapperOf((id)uuid, name);
        EXPECT_EQ([(id)uuid retainCount], 2U);
        EXPECT_EQ(wrapper.call("Description").asText(), [[(id)uuid description] UTF8String]);
        wrapper.reset();
        EXPECT_EQ([(id)uuid retainCount], 1U);
        CFRelease(uuid);
    }
}

struct ValueClass {
    const char* name;
    std::vector<const char*> properties;
};

const ValueClass kValueClasses[] = {
    {"NSPointZQM", {"X", "Y"}},
    {"NSSizeZQM", {"Width", "Height"}},
    {"NSRectZQM", {"X", "Y", "Width", "Height"}},
};

TEST_F(FoundationTest, ValuesAreReadAndWrittenInTheirWords) {
    for (const ValueClass& type : kValueClasses) {
        Object made = host.create(type.name);
        for (std::size_t word = 0; word < type.properties.size(); ++word) {
            double* const data = &made.dataAs<double>() + word;
            EXPECT_EQ(*data, 0);
            made.set(type.properties[word], 1.5 + static_cast<double>(word));
            EXPECT_EQ(*data, 1.5 + static_cast<double>(word));
            *data = -2.25;
            EXPECT_EQ(made.get(type.properties[word]).asDouble(), -2.25);
        }
    }
}

TEST_F(FoundationTest, RangeIsReadAndWrittenInItsWords) {
    Object made = host.create("NSRangeZQM");
    made.set("Location", 5);
    made.set("Length", 6);
    EXPECT_THAT((made.dataAs<std::array<std::int64_t, 2>>()), ElementsAre(5, 6));
    made.dataAs<std::array<std::int64_t, 2>>() = {7, 8};
    EXPECT_EQ(made.get("Location").asInteger(), 7);
    EXPECT_EQ(made.get("Length").asInteger(), 8);
}

TEST_F(FoundationTest, CarrierKeepsAHostObject) {
    Class<Carrier> const carrier = objc_getClass("ZQMREALobjectWrapper");
    ASSERT_NE(carrier, Nil);
    Object object = host.date(2020);
    const REALobject handle = object.handle();
    id<Carrier> const wrapper = [carrier wrap:handle];
    object.reset();
    EXPECT_EQ(host.ledger().objects.locks, 1) << "the carrier's";
    const Object back = host.adopt([wrapper unwrap]);
    EXPECT_EQ(back.handle(), handle);
    EXPECT_EQ(host.ledger().objects.locks, 2);
    EXPECT_EQ([carrier wrap:nullptr], nil);
    pool.reset();
    EXPECT_EQ(host.ledger().objects.locks, 1) << "one's own";
}

TEST_F(FoundationTest, CarrierOfAHostThatCantLockIsNone) {
    zqm::support::inFreshProcess([&] {
        Class<Carrier> const carrier = objc_getClass("ZQMREALobjectWrapper");
        const Object object = host.date(2020);
        host.entryPoints().refuse("REALLockObject");
        EXPECT_EQ([carrier wrap:object.handle()], nil);
        pool.reset();
        EXPECT_EQ(host.ledger().objects.locks, 1) << "one's own";
    });
}

} // namespace
