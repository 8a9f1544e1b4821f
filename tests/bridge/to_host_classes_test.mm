// Objects of Cocoa's own classes as wrapper objects of the host.

#include "tests/bridge/to_host_fixture.h"

#include "bridge/wrapper_objects.h"
#include "plugin/platform_guard.h"
#include "tests/bridge/documented_cocoa_classes.h"
#include "tests/support/fresh_process.h"

#include <bit>
#include <functional>

namespace {

using documented::Wrapping;
using testing::IsEmpty;
using zqm::host::Object;
using zqm::support::inFreshProcess;

std::string hostClassOf(const std::string& cocoaClass) {
    return cocoaClass + "ZQM";
}

const documented::CocoaClass& firstRowOf(Class type) {
    for (const documented::CocoaClass& row : documented::kCocoaClasses) {
        const Class rowsClass = objc_getClass(row.name);
        if (rowsClass != Nil && [type isSubclassOfClass:rowsClass]) {
            return row;
        }
    }
    throw std::logic_error("a class of no row");
}

bool isShared(Wrapping wrapping) {
    return wrapping == Wrapping::Direct || wrapping == Wrapping::Error;
}

} // namespace

namespace documented {
void PrintTo(const CocoaClass& row, std::ostream* out) {
    *out << row.name;
}
} // namespace documented

namespace {

// Classes that the system lacks have none but NSObject above them here, so that every row can be reached.
class CocoaClasses : public ToHostTest, public testing::WithParamInterface<documented::CocoaClass> {
protected:
    Class type = cocoaClass(GetParam().name);
    const documented::CocoaClass& row = firstRowOf(type);
    const std::string hostClass = hostClassOf(row.name);
    const id object = [newCounted(type) autorelease];
};

TEST_P(CocoaClasses, AreWrappedInTheirHostClass) {
    defineWrapper(hostClass);
    const Object wrapper = converted(object);
    ASSERT_FALSE(wrapper.isNull());
    EXPECT_EQ(wrapper.className(), hostClass);
    EXPECT_EQ(wrapper.dataAs<id>(), object);
    EXPECT_EQ([object retainCount], 2U);
    EXPECT_EQ(isKnown(object), isShared(row.wrapping));
    const Object again = converted(object);
    EXPECT_EQ(again == wrapper, isShared(row.wrapping));
}

TEST_P(CocoaClasses, AreWrappedWithoutAnInstancesDictionary) {
    CFMutableDictionaryRef const kept = std::exchange(instances, nullptr);
    host->defineClass({.name = hostClass, .dataSize = 16, .dispose = [](void* data) {
                           [*static_cast<id*>(data) release];
                       }});
    {
        const Object wrapper = converted(object);
        ASSERT_FALSE(wrapper.isNull());
        EXPECT_EQ(wrapper.dataAs<id>(), object);
        EXPECT_FALSE(converted(object) == wrapper);
    }
    instances = kept;
}

// A direct one goes neither to a superclass nor to its own class's wrapper; one of a chain goes up.
TEST_P(CocoaClasses, WithoutTheirHostClassAreWhatTheirRuleSays) {
    defineWrapper("NSObjectZQM");
    defineWrapper(hostClassOf(class_getName([object class])));
    const Object wrapper = converted(object);
    if (isShared(row.wrapping)) {
        EXPECT_TRUE(wrapper.isNull());
        EXPECT_FALSE(isKnown(object));
        EXPECT_EQ([object retainCount], 1U);
    } else {
        EXPECT_EQ(wrapper.className(), hostClassOf(class_getName([object class])));
        EXPECT_EQ(wrapper.dataAs<id>(), object);
    }
}

TEST_P(CocoaClasses, WithNoHostClassAtAllAreNil) {
    EXPECT_TRUE(converted(object).isNull());
    EXPECT_EQ([object retainCount], 1U);
    EXPECT_FALSE(isKnown(object));
    defineWrapper(hostClass); // it has come: its absence is not kept
    EXPECT_EQ(converted(object).className(), hostClass);
}

TEST_P(CocoaClasses, ArePreferredMostDerived) {
    defineWrapper(hostClass);
    defineWrapper(hostClassOf(class_getName([object class])), hostClass);
    const Object wrapper = converted(object);
    EXPECT_EQ(wrapper.className(),
              isShared(row.wrapping) ? hostClass : hostClassOf(class_getName([object class])));
}

INSTANTIATE_TEST_SUITE_P(All, CocoaClasses, testing::ValuesIn(documented::kCocoaClasses),
                         [](const auto& row) { return std::string(row.param.name); });

// The classes as they descend from each other where all of them exist.
struct Descent {
    std::vector<const char*> line; // from the root to the object's class
    std::vector<const char*> hostClasses;
    const char* wrapper; // null: nil
    bool isShared;
};

void PrintTo(const Descent& descent, std::ostream* out) {
    *out << descent.line.back() << " as " << (descent.wrapper != nullptr ? descent.wrapper : "nil");
}

const std::vector<const char*> kViews{"NSResponder", "NSView"};

std::vector<const char*> below(std::vector<const char*> line, std::initializer_list<const char*> more) {
    line.insert(line.end(), more);
    return line;
}

const Descent kDescents[] = {
    {below(kViews, {"NSControl", "NSTextField", "NSSecureTextField"}),
     {"NSSecureTextFieldZQM", "NSTextFieldZQM", "NSViewZQM"},
     "NSTextFieldZQM",
     true},
    {below(kViews, {"NSControl", "NSTextField", "NSSecureTextField"}),
     {"NSSecureTextFieldZQM", "NSViewZQM"},
     nullptr,
     false},
    {below(kViews, {"NSControl", "NSTextField", "NSSearchField"}),
     {"NSSearchFieldZQM", "NSTextFieldZQM"},
     "NSTextFieldZQM",
     true},
    {below(kViews, {"NSControl", "NSTextField", "NSComboBox"}),
     {"NSComboBoxZQM", "NSTextFieldZQM"},
     "NSComboBoxZQM",
     true},
    {below(kViews, {"NSControl", "NSTableView"}),
     {"NSTableViewZQM", "NSViewZQM", "NSResponderZQM"},
     "NSTableViewZQM",
     false},
    {below(kViews, {"NSControl", "NSTableView"}), {"NSViewZQM", "NSResponderZQM"}, "NSViewZQM", false},
    {below(kViews, {"NSControl", "NSTableView"}), {"NSResponderZQM"}, "NSResponderZQM", false},
    {below(kViews, {"NSText", "NSTextView"}), {"NSTextZQM", "NSViewZQM"}, "NSTextZQM", false},
    {{"NSResponder", "NSWindow", "NSPanel", "NSFontPanel"},
     {"NSFontPanelZQM", "NSWindowZQM"},
     "NSFontPanelZQM",
     true},
    {{"NSResponder", "NSWindow", "NSPanel"}, {"NSWindowZQM", "NSResponderZQM"}, "NSWindowZQM", false},
    {{"NSResponder", "NSViewController"}, {"NSResponderZQM"}, nullptr, false},
    {{"NSResponder", "NSApplication"}, {"NSApplicationZQM", "NSResponderZQM"}, "NSApplicationZQM", true},
    {{"NSCell", "NSActionCell", "NSTextFieldCell", "NSSearchFieldCell"},
     {"NSSearchFieldCellZQM", "NSTextFieldCellZQM"},
     "NSSearchFieldCellZQM",
     true},
    {{"NSCell", "NSActionCell", "NSTextFieldCell"},
     {"NSTextFieldCellZQM", "NSCellZQM"},
     "NSTextFieldCellZQM",
     false},
    {{"NSCell", "NSActionCell", "NSPathCell"}, {"NSCellZQM"}, nullptr, false},
    {{"NSPredicate", "NSComparisonPredicate"},
     {"NSComparisonPredicateZQM", "NSPredicateZQM"},
     "NSPredicateZQM",
     true},
    {{"NSPredicate", "NSCompoundPredicate"},
     {"NSCompoundPredicateZQM", "NSPredicateZQM"},
     "NSPredicateZQM",
     true},
    {{"NSEnumerator", "NSDirectoryEnumerator"},
     {"NSDirectoryEnumeratorZQM", "NSEnumeratorZQM"},
     "NSEnumeratorZQM",
     true},
    {{"NSNotificationCenter", "NSDistributedNotificationCenter"},
     {"NSDistributedNotificationCenterZQM", "NSNotificationCenterZQM"},
     "NSDistributedNotificationCenterZQM",
     false},
    {{"NSAttributedString", "NSMutableAttributedString", "NSTextStorage"},
     {"NSTextStorageZQM", "NSAttributedStringZQM"},
     "NSTextStorageZQM",
     true},
    {{"NSAttributedString", "NSMutableAttributedString"},
     {"NSAttributedStringZQM"},
     "NSAttributedStringZQM",
     false},
    {{"NSIndexSet", "NSMutableIndexSet"},
     {"NSMutableIndexSetZQM", "NSIndexSetZQM"},
     "NSMutableIndexSetZQM",
     false},
    {{"NSImageRep", "NSBitmapImageRep"}, {"NSImageRepZQM"}, "NSImageRepZQM", false},
};

class CocoaDescents : public testing::TestWithParam<Descent> {};

TEST_P(CocoaDescents, AreCaughtByTheFirstRow) {
    inFreshProcess([] {
        class Fixture : public ToHostTest {
            void TestBody() override {}

        public:
            using ToHostTest::converted;
            using ToHostTest::defineWrapper;
            using ToHostTest::isKnown;
        } fixture;
        Class type = [NSObject class];
        for (const char* name : GetParam().line) {
            Class const next = cocoaClass(name, type);
            ASSERT_TRUE([next isSubclassOfClass:type]) << name;
            type = next;
        }
        for (const char* name : GetParam().hostClasses) {
            fixture.defineWrapper(name);
        }
        id object = [newCounted(type) autorelease];
        const Object wrapper = fixture.converted(object);
        if (GetParam().wrapper == nullptr) {
            EXPECT_TRUE(wrapper.isNull());
            return;
        }
        ASSERT_FALSE(wrapper.isNull());
        EXPECT_EQ(wrapper.className(), GetParam().wrapper);
        EXPECT_EQ(wrapper.dataAs<id>(), object);
        EXPECT_EQ(fixture.isKnown(object), GetParam().isShared);
    });
}

INSTANTIATE_TEST_SUITE_P(All, CocoaDescents, testing::ValuesIn(kDescents));

class CocoaClassTest : public ToHostTest {};

// It stands before the wrapped object in every message.
id standIn(Class type) {
    static Class const proxy = [] {
        Class made = objc_allocateClassPair([NSObject class], "StandIn", 0);
        class_addIvar(made, "stoodFor", sizeof(Class), 3, "#");
        BOOL(*isKind)
        (id, SEL, Class) = [](id self, SEL, Class asked) -> BOOL {
            Class stoodFor = Nil;
            object_getInstanceVariable(self, "stoodFor", reinterpret_cast<void**>(&stoodFor));
            return asked == [NSObject class] || [stoodFor isSubclassOfClass:asked];
        };
        class_addMethod(made, @selector(isKindOfClass:), std::bit_cast<IMP>(isKind), "c@:#");
        objc_registerClassPair(made);
        return made;
    }();
    id object = [newCounted(proxy) autorelease];
    object_setInstanceVariable(object, "stoodFor", type);
    return object;
}

TEST_F(CocoaClassTest, ObjectThatAnswersForItselfIsWhatItSays) {
    defineWrapper("NSPipeZQM");
    defineWrapper("NSTimerZQM");
    id pipe = standIn(cocoaClass("NSPipe"));
    id timer = standIn(cocoaClass("NSTimer")); // of the same class
    EXPECT_EQ(converted(pipe).className(), "NSPipeZQM");
    EXPECT_EQ(converted(timer).className(), "NSTimerZQM");
}

TEST_F(CocoaClassTest, ObjectThatAnswersForItselfIsAskedAgainWhenAClassHasCome) {
    inFreshProcess([&] {
        defineWrapper("NSToolbarZQM");
        id object = standIn(Nil);
        EXPECT_TRUE(converted(object).isNull());
        object_setInstanceVariable(object, "stoodFor", cocoaClass("NSToolbar"));
        EXPECT_EQ(converted(object).className(), "NSToolbarZQM");
    });
}

// ---- the order of the tests

std::vector<std::string> questions;
std::function<BOOL(id self, Class asked)> answer;

BOOL noteQuestion(id self, SEL, Class asked) {
    questions.emplace_back(class_getName(asked));
    return answer ? answer(self, asked) : NO;
}

// It is what the test answers.
id newAnswering() {
    static Class const type = [] {
        Class made = objc_allocateClassPair([NSObject class], "Answering", 0);
        class_addMethod(made, @selector(isKindOfClass:), std::bit_cast<IMP>(&noteQuestion), "c@:#");
        objc_registerClassPair(made);
        return made;
    }();
    questions.clear();
    answer = nullptr;
    return newCounted(type);
}

TEST_F(CocoaClassTest, ObjectIsAskedForEachClassInOrder) {
    inFreshProcess([&] {
        std::vector<std::string> expected{"NSURL", "NSString", "NSData", "NSArray",
                                          "NSSet", "NSNumber", "NSDate", "NSDictionary"};
        for (const documented::CocoaClass& row : documented::kCocoaClasses) {
            expected.emplace_back(row.name);
        }
        for (const char* optional : documented::kOptionalClasses) {
            expected.emplace_back(optional);
        }
        expected.emplace_back("ZQMREALobjectWrapper");
        expected.emplace_back("NSValue");
        for (const std::string& name : expected) {
            cocoaClass(name.c_str());
        }
        EXPECT_TRUE(converted([newAnswering() autorelease]).isNull());
        EXPECT_EQ(questions, expected);
    });
}

TEST_F(CocoaClassTest, ObjectWithAHostObjectIsAskedNothing) {
    id object = [newAnswering() autorelease];
    const Object owner = host->date(2020);
    CFDictionarySetValue(instances, object, owner.handle());
    EXPECT_EQ(converted(object), owner);
    EXPECT_THAT(questions, IsEmpty());
    CFDictionaryRemoveValue(instances, object);
}

// As a wrapper that a test of it has made.
TEST_F(CocoaClassTest, HostObjectThatHasComeSinceIsTaken) {
    defineWrapper("NSPipeZQM");
    id object = [newAnswering() autorelease];
    const Object owner = host->date(2020);
    answer = [&, pipe = cocoaClass("NSPipe")](id self, Class asked) -> BOOL {
        if (asked != pipe) {
            return NO;
        }
        CFDictionarySetValue(instances, self, owner.handle());
        return YES;
    };
    EXPECT_EQ(converted(object), owner);
    EXPECT_EQ([object retainCount], 1U);
    CFDictionaryRemoveValue(instances, object);
}

TEST_F(CocoaClassTest, ExceptionOfATestPassesThroughAndKeepsNothing) {
    id object = [newAnswering() autorelease];
    answer = [](id, Class) -> BOOL {
        [NSException raise:@"TestException" format:@"as told"];
        return NO;
    };
    for (id one : {object, static_cast<id>([NSArray arrayWithObjects:@"before", object, nil]),
                   static_cast<id>([NSSet setWithObject:object])}) {
        REALobject result = nullptr;
        NSException* exception = runUnderPlatformGuard([&] { result = NewVariantFromNSObject(one); });
        EXPECT_STREQ([[exception name] UTF8String], "TestException");
        EXPECT_EQ(result, nullptr);
        EXPECT_EQ(host->ledger(), zqm::host::Ledger{});
    }
    EXPECT_THAT(host->takeRaised(), IsEmpty());
}

// A class is an object too, but none of its own kind.
TEST_F(CocoaClassTest, ClassIsNoInstanceOfItself) {
    host->defineClass({.name = "NSObjectZQM", .dataSize = 16});
    for (const char* name : {"NSTimer", "NSPipe", "NSIndexSet"}) {
        Class const type = cocoaClass(name);
        const Object wrapper = converted((id)type);
        ASSERT_FALSE(wrapper.isNull()) << name;
        EXPECT_EQ(wrapper.className(), "NSObjectZQM");
        EXPECT_FALSE(isKnown((id)type));
    }
}

} // namespace

// Forwards what it does not know itself.
@interface Forwarder : NSProxy {
    id target;
}
+ (id)to:(id)target;
@end

@implementation Forwarder
+ (id)to:(id)target {
    Forwarder* made = [NSAllocateObject(self, 0, nullptr) autorelease];
    made->target = target;
    return made;
}
- (NSMethodSignature*)methodSignatureForSelector:(SEL)selector {
    return [target methodSignatureForSelector:selector];
}
- (void)forwardInvocation:(NSInvocation*)invocation {
    [invocation invokeWithTarget:target];
}
@end

namespace {

TEST_F(CocoaClassTest, ProxyIsWhatItStandsFor) {
    defineWrapper("NSPipeZQM");
    id pipe = [newCounted(cocoaClass("NSPipe")) autorelease];
    id proxy = [Forwarder to:pipe];
    const Object wrapper = converted(proxy);
    ASSERT_FALSE(wrapper.isNull());
    EXPECT_EQ(wrapper.className(), "NSPipeZQM");
    EXPECT_EQ(wrapper.dataAs<id>(), proxy);
}

// Nothing is remembered of the class of those.
TEST_F(CocoaClassTest, EachProxyIsWhatItStandsFor) {
    NSNumber* number = [NSNumber numberWithInt:7];
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(converted([Forwarder to:@"text"]).variantValue().asText(), "text");
        EXPECT_EQ(converted([Forwarder to:number]).variantType(), converted(number).variantType());
        EXPECT_EQ(converted([Forwarder to:[NSArray array]]).className(), "Array");
    }
}

TEST_F(CocoaClassTest, InstanceOfALevelThatIsNotExpectedStaysTheHosts) {
    Class const parent = cocoaClass("StayingParent");
    Class const child = cocoaClass("StayingChild", parent);
    defineWrapper("StayingChildZQM");
    defineWrapper("StayingParentZQM");
    id object = [newCounted(child) autorelease];
    EXPECT_EQ(NewNSObjectZQM(object, [NSString class]), nullptr);
    EXPECT_EQ([object retainCount], 1U);
    expectedLedger.objects = {.handles = 2, .locks = 2};
}

TEST_F(CocoaClassTest, ObjectAndExpectedClassAreNeeded) {
    EXPECT_EQ(NewNSObjectZQM(nil, [NSObject class]), nullptr);
    EXPECT_EQ(NewNSObjectZQM(@"text", Nil), nullptr);
}

TEST_F(CocoaClassTest, WrapperIsOfTheNearestClassThatHasOne) {
    Class const parent = cocoaClass("NearParent");
    Class const child = cocoaClass("NearChild", parent);
    defineWrapper("NSObjectZQM");
    defineWrapper("NearParentZQM");
    id object = [newCounted(child) autorelease];
    const Object wrapper = host->adopt(NewNSObjectZQM(object, parent));
    ASSERT_FALSE(wrapper.isNull());
    EXPECT_EQ(wrapper.className(), "NearParentZQM");
    EXPECT_EQ(wrapper.dataAs<id>(), object);
    EXPECT_FALSE(isKnown(object));
}

// The fallback for objects of other classes.
TEST_F(CocoaClassTest, ObjectOfAnotherClassIsWrappedByTheFirstThatExists) {
    Class const parent = cocoaClass("OtherParent");
    Class const child = cocoaClass("OtherChild", parent);
    id object = [newCounted(child) autorelease];
    EXPECT_TRUE(converted(object).isNull());
    defineWrapper("NSObjectZQM");
    EXPECT_EQ(converted(object).className(), "NSObjectZQM");
    defineWrapper("OtherParentZQM");
    EXPECT_EQ(converted(object).className(), "OtherParentZQM");
    defineWrapper("OtherChildZQM");
    const Object wrapper = converted(object);
    EXPECT_EQ(wrapper.className(), "OtherChildZQM");
    EXPECT_EQ(wrapper.dataAs<id>(), object);
    EXPECT_FALSE(isKnown(object));
    EXPECT_FALSE(converted(object) == wrapper);
}

TEST_F(CocoaClassTest, NameOf200BytesHasNoHostClass) {
    const std::string longest = std::string("Longest") + std::string(192, 'x');
    const std::string tooLong = std::string("TooLong") + std::string(193, 'x');
    ASSERT_EQ(longest.size(), 199U);
    ASSERT_EQ(tooLong.size(), 200U);
    for (const std::string& name : {longest, tooLong}) {
        defineWrapper(hostClassOf(name));
        // Not a counted object: the class's own name counts.
        id object = [[[cocoaClass(name.c_str()) alloc] init] autorelease];
        const Object wrapper = converted(object);
        EXPECT_EQ(wrapper.isNull(), name == tooLong);
        EXPECT_EQ(host->adopt(NewNSObjectZQM(object, [NSObject class])).isNull(), name == tooLong);
    }
    defineWrapper("NSObjectZQM");
    EXPECT_EQ(converted([[[cocoaClass(tooLong.c_str()) alloc] init] autorelease]).className(), "NSObjectZQM");
}

TEST_F(CocoaClassTest, HostThatMakesNoObjectsHasNoWrappers) {
    PluginHost::refuse("PluginNewInstance");
    EXPECT_TRUE(converted([newCounted(cocoaClass("NSPipe")) autorelease]).isNull());
    EXPECT_TRUE(converted([newCounted(cocoaClass("NSIndexSet")) autorelease]).isNull());
    EXPECT_TRUE(converted([newCounted(cocoaClass("OtherParent")) autorelease]).isNull());
}

TEST_F(CocoaClassTest, ErrorKeepsItsHostObjectWhileThatLives) {
    defineWrapper("NSErrorZQM");
    NSError* error = [NSError errorWithDomain:@"d" code:3 userInfo:nil];
    const REALobject first = NewVariantFromNSObject(error);
    const Object again = converted(error);
    EXPECT_EQ(again.handle(), first);
    EXPECT_EQ(again.dataAs<id>(), error);
    host->adopt(first).reset();
}

REALobject knownView = nullptr;
id viewAskedFor = nil;
REALobject newQTKitView(id, SEL, id view) {
    viewAskedFor = view;
    if (knownView != nullptr) {
        REALLockObject(knownView);
    }
    return knownView;
}

TEST_F(CocoaClassTest, SiblingMayKnowAView) {
    inFreshProcess([&] {
        defineWrapper("NSViewZQM");
        id view = [newCounted(cocoaClass("NSView")) autorelease];
        EXPECT_EQ(converted(view).className(), "NSViewZQM");
        class_addMethod(object_getClass([NSValue class]), sel_registerName("NewQTKitNSViewZQM:"),
                        std::bit_cast<IMP>(&newQTKitView), "@@:@");
        EXPECT_EQ(converted(view).className(), "NSViewZQM");
        EXPECT_EQ(viewAskedFor, view);
        const Object other = host->date(2020);
        knownView = other.handle();
        EXPECT_EQ(converted(view), other);
        EXPECT_FALSE(isKnown(view));
    });
}

class OptionalClasses : public testing::TestWithParam<const char*> {};

class OptionalFixture : public ToHostTest {
    void TestBody() override {}

public:
    using ToHostTest::converted;
    using ToHostTest::defineWrapper;
    using ToHostTest::isKnown;
};

TEST_P(OptionalClasses, AreWrappedAndShared) {
    inFreshProcess([] {
        OptionalFixture fixture;
        fixture.defineWrapper(hostClassOf(GetParam()));
        id object = [newCounted(cocoaClass(GetParam())) autorelease];
        const Object wrapper = fixture.converted(object);
        ASSERT_FALSE(wrapper.isNull());
        EXPECT_EQ(wrapper.className(), hostClassOf(GetParam()));
        EXPECT_EQ(wrapper.dataAs<id>(), object);
        EXPECT_TRUE(fixture.isKnown(object));
        EXPECT_EQ(fixture.converted(object), wrapper);
    });
}

TEST_P(OptionalClasses, WithoutTheirHostClassAreNil) {
    inFreshProcess([] {
        OptionalFixture fixture;
        fixture.defineWrapper("NSObjectZQM");
        EXPECT_TRUE(fixture.converted([newCounted(cocoaClass(GetParam())) autorelease]).isNull());
    });
}

// They are then objects of any other class.
TEST_P(OptionalClasses, ThatComeAfterTheFirstUseStayUnknown) {
    inFreshProcess([] {
        OptionalFixture fixture;
        fixture.converted([newCounted([NSObject class]) autorelease]);
        fixture.defineWrapper(hostClassOf(GetParam()));
        id object = [newCounted(cocoaClass(GetParam())) autorelease];
        const Object wrapper = fixture.converted(object);
        ASSERT_FALSE(wrapper.isNull());
        EXPECT_FALSE(fixture.isKnown(object));
    });
}

INSTANTIATE_TEST_SUITE_P(All, OptionalClasses, testing::ValuesIn(documented::kOptionalClasses),
                         [](const auto& row) { return std::string(row.param); });

} // namespace
