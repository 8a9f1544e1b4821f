// A recognizer object from creation to its end, and the platform object behind it.

#include "plugin/set_up.h"
#include "tests/speech/recognizer_host.h"
#include "tests/support/log_lines.h"

#include <cstdlib>
#include <memory>
#include <objc/runtime.h>

namespace {

using testing::ElementsAre;
using zqm::host::HostException;
using zqm::host::Object;
using zqm::host::String;

using RecognizerLifeCycle = RecognizerTest;

TEST_F(RecognizerLifeCycle, MakesThePlatformObjectWithTheHostObject) {
    const Object object = newRecognizer();
    MyNSSpeechRecognizerZQM* recognizer = platformObjectOf(object);
    EXPECT_TRUE([recognizer isMemberOfClass:[MyNSSpeechRecognizerZQM class]]);
    EXPECT_EQ([recognizer delegate], recognizer);
    EXPECT_EQ(recognizer->target, object.handle());
    EXPECT_EQ([recognizer retainCount], 1U);
}

TEST_F(RecognizerLifeCycle, GivesItsOneRetainBackAtTheEnd) {
    const auto before = host->ledger();
    Object object = newRecognizer();
    MyNSSpeechRecognizerZQM* recognizer = [platformObjectOf(object) retain];
    object.reset();
    EXPECT_EQ([recognizer retainCount], 1U);
    EXPECT_EQ([recognizer delegate], nil);
    EXPECT_EQ(recognizer->target, nullptr);
    [recognizer release];
    EXPECT_EQ(host->ledger(), before);
}

TEST_F(RecognizerLifeCycle, RefusesASecondConstructorAndKeepsTheFirstRecognizer) {
    const Object object = newRecognizer();
    MyNSSpeechRecognizerZQM* const first = platformObjectOf(object);
    try {
        construct(object);
        ADD_FAILURE() << "not refused";
    } catch (const HostException& exception) {
        EXPECT_EQ(exception.className(), "UnsupportedOperationException");
        EXPECT_EQ(exception.message(), "Constructor called too often. Object is already initialized.");
        EXPECT_EQ(exception.all().size(), 1U);
    }
    EXPECT_EQ(platformObjectOf(object), first);
    EXPECT_EQ([first retainCount], 1U);
}

TEST_F(RecognizerLifeCycle, CanBeConstructedAgainOnceItHasEnded) {
    const Object object = newRawObject();
    construct(object);
    EXPECT_NE(platformObjectOf(object), nil);
    EXPECT_EQ(platformObjectOf(object)->target, object.handle());
}

int stops = 0;

// The host calls "Destructor" first; whoever retains the platform object without that goes on hearing.
TEST_F(RecognizerLifeCycle, TheClassDestructorOnlyReleases) {
    zqm::support::inFreshProcess([this] {
        replaceMethod(
            @selector(stopListening), +[](id, SEL) { ++stops; });
        const Object object = newRecognizer();
        MyNSSpeechRecognizerZQM* recognizer = [platformObjectOf(object) retain];
        NSSpeechRecognizerClass.destructor(object.handle());
        EXPECT_EQ(platformObjectOf(object), nil);
        EXPECT_EQ([recognizer retainCount], 1U);
        EXPECT_EQ([recognizer delegate], recognizer);
        EXPECT_EQ(recognizer->target, object.handle());
        EXPECT_EQ(stops, 0);
        NSSpeechRecognizerClass.destructor(object.handle());
        [recognizer release];
    });
}

// ---- where the platform has no recognizer

id releaseAndAnswerNil(id self, SEL /*selector*/) {
    [self release];
    return nil;
}

TEST_F(RecognizerLifeCycle, StaysWithoutARecognizerWhereThePlatformHasNone) {
    zqm::support::inFreshProcess([this] {
        replaceMethod(@selector(init), releaseAndAnswerNil);
        const auto before = host->ledger();
        Object object = host->create("NSSpeechRecognizerZQM");
        ASSERT_EQ(platformObjectOf(object), nil);

        zqm::host::Array list{object.call("commands").asObject()};
        EXPECT_EQ(list.elementType(), zqm::host::ElementType::String);
        EXPECT_EQ(list.size(), 0U);
        list.reset();
        object.call("setCommands", host->array(zqm::host::ElementType::String, {"one"}));
        object.call("setCommands", Object());
        object.call("startListening");
        object.call("stopListening");
        object.call("Destructor");
        object.set("listensInForegroundOnly", true);
        EXPECT_FALSE(object.get("listensInForegroundOnly").asBool());
        object.set("blocksOtherRecognizers", true);
        EXPECT_FALSE(object.get("blocksOtherRecognizers").asBool());
        object.set("displayedCommandsTitle", "title");
        EXPECT_TRUE(object.get("displayedCommandsTitle").isNull());
        object.set("displayedCommandsTitle", String());

        object.reset();
        EXPECT_EQ(host->ledger(), before);
        EXPECT_THAT(host->takeRaised(), testing::IsEmpty());
    });
}

TEST_F(RecognizerLifeCycle, ReadsNoArrayForARecognizerThatIsNotThere) {
    Object object = newRawObject();
    object.call("setCommands", host->array(zqm::host::ElementType::String, {"one"}));
    EXPECT_EQ(host->entryPoints().calls("RuntimeUBound"), 0U);
}

// ---- "Destructor"

TEST_F(RecognizerLifeCycle, RaisesNothingAfterDestructor) {
    Object object = newRecognizer();
    int events = 0;
    object.on("DidRecognizeCommand", [&](const auto&) { ++events; });
    MyNSSpeechRecognizerZQM* recognizer = platformObjectOf(object);
    recognize(recognizer, @"one");
    EXPECT_EQ(events, 1);
    for (int time = 1; time <= 2; ++time) {
        object.call("Destructor");
        EXPECT_EQ([recognizer delegate], nil);
        EXPECT_EQ(recognizer->target, nullptr);
        recognize(recognizer, @"one");
        EXPECT_EQ(events, 1);
    }
    EXPECT_EQ(platformObjectOf(object), recognizer);
    EXPECT_EQ([recognizer retainCount], 1U);
}

TEST_F(RecognizerLifeCycle, KeepsItsCommandsAndPropertiesAfterDestructor) {
    Object object = newRecognizer();
    object.call("Destructor");
    object.call("setCommands", host->array(zqm::host::ElementType::String, {"one"}));
    EXPECT_STREQ([[[platformObjectOf(object) commands] lastObject] UTF8String], "one");
    object.set("displayedCommandsTitle", "title");
    EXPECT_EQ(object.get("displayedCommandsTitle").asText(), "title");
}

// Another library of the family may have put an object of its own there.
TEST_F(RecognizerLifeCycle, DestructorLeavesAnObjectOfAnotherClassAlone) {
    Object object = newRawObject();
    instanceData<id>(object.handle()) = [[NSObject alloc] init];
    const auto log = zqm::support::logged([&] { object.call("Destructor"); });
    EXPECT_THAT(log, testing::IsEmpty());
    EXPECT_NE(instanceData<id>(object.handle()), nil);
}

// ---- what is shared with the other libraries of the family

CFMutableDictionaryRef dictionary = nullptr;
int fetched = 0;
int prepared = 0;
std::vector<std::string> happened;

CFMutableDictionaryRef fetchDictionary(id, SEL) {
    ++fetched;
    return dictionary;
}

void prepare(id, SEL) {
    ++prepared;
}

void addSibling() {
    dictionary = CFDictionaryCreateMutable(nullptr, 0, nullptr, nullptr);
    Class meta = object_getClass([NSException class]);
    class_addMethod(meta, @selector(GetInstancesDictionaryZQM),
                    reinterpret_cast<IMP>(reinterpret_cast<void*>(fetchDictionary)), "^v@:");
    class_addMethod(meta, @selector(PrepareNSExceptionZQM),
                    reinterpret_cast<IMP>(reinterpret_cast<void*>(prepare)), "v@:");
}

void deallocNoting(id self, SEL selector) {
    happened.emplace_back(CFDictionaryGetValue(dictionary, self) == nullptr ? "removed" : "still there");
    const IMP inherited =
        method_getImplementation(class_getInstanceMethod([NSSpeechRecognizer class], selector));
    reinterpret_cast<void (*)(id, SEL)>(reinterpret_cast<void*>(inherited))(self, selector);
}

using RecognizerInFamily = RecognizerAloneTest;

TEST_F(RecognizerInFamily, EntersItsPlatformObjectAndRemovesItBeforeItsEnd) {
    zqm::support::inFreshProcess([this] {
        addSibling();
        replaceMethod(@selector(dealloc), deallocNoting);
        Object object = newRecognizer();
        EXPECT_EQ(CFDictionaryGetCount(dictionary), 1);
        EXPECT_EQ(CFDictionaryGetValue(dictionary, platformObjectOf(object)), object.handle());
        object.reset();
        EXPECT_EQ(CFDictionaryGetCount(dictionary), 0);
        EXPECT_THAT(happened, ElementsAre("removed"));
    });
}

TEST_F(RecognizerInFamily, EntersNothingWhereThePlatformHasNoRecognizer) {
    zqm::support::inFreshProcess([this] {
        addSibling();
        replaceMethod(@selector(init), releaseAndAnswerNil);
        const Object object = host->create("NSSpeechRecognizerZQM");
        EXPECT_EQ(CFDictionaryGetCount(dictionary), 0);
        EXPECT_EQ(fetched, 1);
        EXPECT_EQ(prepared, 1);
    });
}

TEST_F(RecognizerInFamily, LivesWithoutADictionary) {
    zqm::support::inFreshProcess([this] {
        Object object = newRecognizer();
        EXPECT_EQ(instances, nullptr);
        object.reset();
    });
}

TEST_F(RecognizerInFamily, IsSetUpAfterTheTestForAnInitialisedObject) {
    zqm::support::inFreshProcess([this] {
        const Object object = newRecognizer();
        addSibling();
        EXPECT_THROW(construct(object), HostException);
        EXPECT_EQ(fetched, 0);
        EXPECT_EQ(prepared, 0);
    });
}

TEST_F(RecognizerInFamily, IsSetUpByNoOtherMember) {
    zqm::support::inFreshProcess([this] {
        Object object = newRecognizer();
        addSibling();
        object.call("commands");
        object.call("setCommands", host->array(zqm::host::ElementType::String, {"one"}));
        object.call("stopListening");
        object.get("listensInForegroundOnly");
        object.set("listensInForegroundOnly", false);
        object.get("displayedCommandsTitle");
        object.set("displayedCommandsTitle", "title");
        object.get("blocksOtherRecognizers");
        object.set("blocksOtherRecognizers", true);
        object.call("Destructor");
        EXPECT_EQ(fetched, 0);
        EXPECT_EQ(prepared, 0);
    });
}

// ---- the platform object by itself

TEST(RecognizerObject, CopiesByARetain) {
    AutoreleasePool pool;
    MyNSSpeechRecognizerZQM* recognizer = [[MyNSSpeechRecognizerZQM alloc] init];
    EXPECT_EQ([recognizer copyWithZone:nullptr], recognizer);
    EXPECT_EQ([recognizer retainCount], 2U);
    [recognizer release];
    [recognizer release];
}

TEST(RecognizerObject, HasNoTargetBeforeAHostObjectHasIt) {
    AutoreleasePool pool;
    MyNSSpeechRecognizerZQM* recognizer = [[MyNSSpeechRecognizerZQM alloc] init];
    EXPECT_EQ(recognizer->target, nullptr);
    recognize(recognizer, @"one");
    [recognizer release];
}

TEST(RecognizerObject, IsARecognizerAndADelegate) {
    EXPECT_EQ([MyNSSpeechRecognizerZQM superclass], [NSSpeechRecognizer class]);
    unsigned int count = 0;
    const std::unique_ptr<Protocol*[], void (*)(void*)> protocols(
        class_copyProtocolList([MyNSSpeechRecognizerZQM class], &count), std::free);
    ASSERT_EQ(count, 1U);
    EXPECT_STREQ(protocol_getName(protocols[0]), "NSSpeechRecognizerDelegate");
}

TEST(RecognizerObject, HoldsOneVariable) {
    unsigned int count = 0;
    const std::unique_ptr<Ivar[], void (*)(void*)> variables(
        class_copyIvarList([MyNSSpeechRecognizerZQM class], &count), std::free);
    ASSERT_EQ(count, 1U);
    EXPECT_STREQ(ivar_getName(variables[0]), "target");
}

TEST(RecognizerObject, HasThreeMethods) {
    unsigned int count = 0;
    const std::unique_ptr<Method[], void (*)(void*)> methods(
        class_copyMethodList([MyNSSpeechRecognizerZQM class], &count), std::free);
    std::vector<std::string> names;
    for (unsigned int i = 0; i < count; ++i) {
        names.emplace_back(sel_getName(method_getName(methods[i])));
    }
    EXPECT_THAT(names, testing::UnorderedElementsAre("copyWithZone:", "clearTarget",
                                                     "speechRecognizer:didRecognizeCommand:"));
}

} // namespace
