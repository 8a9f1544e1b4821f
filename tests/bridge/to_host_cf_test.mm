// CoreFoundation's and CoreText's objects as wrapper objects of the host.

#include "tests/bridge/to_host_fixture.h"

#include "tests/bridge/documented_cf_types.h"

#include <array>
#include <bit>
#include <zqmplatform/type_instances.h>

@interface NSObject (CFTypeInstances)
- (id)initWithType:(CFTypeID)type;
- (CFTypeID)_cfTypeID;
@end

namespace documented {
void PrintTo(const CFType& type, std::ostream* out) {
    *out << type.kind;
}
} // namespace documented

namespace {

using zqm::host::Object;

constexpr std::uint64_t kMarker = 0x52424346;
using Words = std::array<std::uint64_t, 3>;

// The platform library's class of objects that have no class in Foundation.
Class ownClass() {
    static Class const type = [] {
        CFTypeRef instance = ZQMPlatformCreateInstanceOfType(CFBagGetTypeID());
        Class const itsClass = object_getClass((id)instance);
        CFRelease(instance);
        return itsClass;
    }();
    return type;
}

id objectOfType(CFTypeID type) {
    return [[[ownClass() alloc] initWithType:type] autorelease];
}

class CFToHost : public ToHostTest {
protected:
    void defineCFWrapper(const char* name, std::uint64_t marker = kMarker) {
        host->defineClass({.name = name,
                           .dataSize = sizeof(Words),
                           .initialise =
                               [marker](void* data) {
                                   static_cast<Words*>(data)->at(1) = 77;
                                   static_cast<Words*>(data)->at(2) = marker;
                               },
                           .dispose =
                               [this](void* data) {
                                   ++disposed;
                                   [*static_cast<id*>(data) release];
                               }});
    }
    static void expectCarries(const Object& wrapper, id object, const char* hostClass) {
        ASSERT_FALSE(wrapper.isNull());
        EXPECT_EQ(wrapper.className(), hostClass);
        EXPECT_EQ(wrapper.dataAs<Words>(), (Words{reinterpret_cast<std::uint64_t>(object), 77, kMarker}));
        EXPECT_EQ([object retainCount], 2U);
        EXPECT_FALSE(isKnown(object));
    }

    int disposed = 0;
};

class CFTypesToHost : public CFToHost, public testing::WithParamInterface<documented::CFType> {};

TEST_P(CFTypesToHost, AreWrappedInTheirHostClass) {
    defineCFWrapper("CFObjectZQM");
    defineCFWrapper(GetParam().hostClass);
    id object = objectOfType(GetParam().type());
    ASSERT_EQ(CFGetTypeID(reinterpret_cast<CFTypeRef>(object)), GetParam().type());
    expectCarries(converted(object), object, GetParam().hostClass);
    EXPECT_EQ([object retainCount], 1U);
}

TEST_P(CFTypesToHost, AreWrappedInTheCommonClassWithoutTheirOwn) {
    defineCFWrapper("CFObjectZQM");
    id object = objectOfType(GetParam().type());
    expectCarries(converted(object), object, "CFObjectZQM");
}

TEST_P(CFTypesToHost, WithoutTheMarkerAreNil) {
    defineCFWrapper("CFObjectZQM");
    defineCFWrapper(GetParam().hostClass, kMarker + 1);
    defineWrapper("NSObjectZQM");
    id object = objectOfType(GetParam().type());
    EXPECT_TRUE(converted(object).isNull());
    EXPECT_EQ([object retainCount], 1U);
    EXPECT_EQ(disposed, 1);
}

TEST_P(CFTypesToHost, WithNoHostClassAreNil) {
    defineWrapper("NSObjectZQM");
    EXPECT_TRUE(converted(objectOfType(GetParam().type())).isNull());
}

INSTANTIATE_TEST_SUITE_P(All, CFTypesToHost, testing::ValuesIn(documented::kCFTypes),
                         [](const auto& row) { return std::string(row.param.kind); });

TEST_F(CFToHost, InstanceThatThePlatformMakesIsWrapped) {
    defineCFWrapper("CFUUIDZQM");
    id object = [(id)ZQMPlatformCreateInstanceOfType(CFUUIDGetTypeID()) autorelease];
    expectCarries(converted(object), object, "CFUUIDZQM");
}

TEST_F(CFToHost, OtherTypeIsWrappedInTheCommonClass) {
    defineCFWrapper("CFObjectZQM");
    for (const documented::CFType& type : documented::kCFTypes) {
        defineCFWrapper(type.hostClass);
    }
    id object = objectOfType(100000);
    expectCarries(converted(object), object, "CFObjectZQM");
}

TEST_F(CFToHost, CommonClassWithoutTheMarkerIsNil) {
    defineCFWrapper("CFObjectZQM", 0);
    defineWrapper("NSObjectZQM");
    for (const CFTypeID type : {CFBagGetTypeID(), CFTypeID{100000}}) {
        id object = objectOfType(type);
        EXPECT_TRUE(converted(object).isNull());
        EXPECT_EQ([object retainCount], 1U);
    }
    EXPECT_EQ(disposed, 2);
}

TEST_F(CFToHost, ObjectOfTypeNoneIsNoneOfCoreFoundations) {
    defineCFWrapper("CFObjectZQM");
    defineWrapper("NSObjectZQM");
    EXPECT_EQ(converted(objectOfType(0)).className(), "NSObjectZQM");
}

TEST_F(CFToHost, ObjectsThatHaveAClassInFoundationAreThat) {
    defineCFWrapper("CFObjectZQM");
    defineCFWrapper("CFStringZQM");
    id text = [(id)ZQMPlatformCreateInstanceOfType(CFStringGetTypeID()) autorelease];
    EXPECT_EQ(converted(text).variantType(), code::kString);
    id truth = [(id)ZQMPlatformCreateInstanceOfType(CFBooleanGetTypeID()) autorelease];
    EXPECT_EQ(converted(truth).variantType(), code::kBoolean);
}

// Its own answer tells only that it has a type.
TEST_F(CFToHost, TypeIsTheOneThatCoreFoundationSees) {
    defineCFWrapper("CFObjectZQM");
    defineCFWrapper("CFUUIDZQM");
    Class const type = cocoaClass("SaysItIsAUUID");
    CFTypeID (*answer)(id, SEL) = [](id, SEL) -> CFTypeID { return CFUUIDGetTypeID(); };
    class_addMethod(type, @selector(_cfTypeID), std::bit_cast<IMP>(answer), "Q@:");
    id object = [newCounted(type) autorelease];
    expectCarries(converted(object), object, "CFObjectZQM");
}

// What raises, once.
enum class Step { None, Type, Instance, Retain };
Step raising = Step::None;

void raiseAt(Step step) {
    if (raising == step) {
        raising = Step::None;
        [NSException raise:@"TestException" format:@"as told"];
    }
}

REALobject raisingNewInstance(const char* name) {
    raiseAt(Step::Instance);
    return reinterpret_cast<REALobject (*)(const char*)>(zqm::host::Runtime::resolver()("PluginNewInstance"))(
        name);
}

class CFExceptions : public CFToHost, public testing::WithParamInterface<Step> {
protected:
    static id raisingObject() {
        static Class const type = [] {
            Class made = objc_allocateClassPair(ownClass(), "RaisingCFObject", 0);
            CFTypeID (*askType)(id, SEL) = [](id, SEL) -> CFTypeID {
                raiseAt(Step::Type);
                return CFUUIDGetTypeID();
            };
            id (*retain)(id, SEL) = [](id self, SEL) -> id {
                raiseAt(Step::Retain);
                NSIncrementExtraRefCount(self);
                return self;
            };
            class_addMethod(made, @selector(_cfTypeID), std::bit_cast<IMP>(askType), "Q@:");
            class_addMethod(made, @selector(retain), std::bit_cast<IMP>(retain), "@@:");
            objc_registerClassPair(made);
            return made;
        }();
        return [newCounted(type) autorelease];
    }
};

TEST_P(CFExceptions, LetTheFallbackRun) {
    defineCFWrapper("CFUUIDZQM");
    defineWrapper("RaisingCFObjectZQM");
    PluginHost::replace("PluginNewInstance", raisingNewInstance);
    id object = raisingObject();
    raising = GetParam();
    const Object wrapper = converted(object);
    EXPECT_EQ(raising, Step::None) << "nothing was raised";
    ASSERT_FALSE(wrapper.isNull());
    EXPECT_EQ(wrapper.className(), GetParam() == Step::None ? "CFUUIDZQM" : "RaisingCFObjectZQM");
    EXPECT_EQ(wrapper.dataAs<id>(), object);
    EXPECT_EQ(disposed, GetParam() == Step::Retain ? 1 : 0);
    EXPECT_TRUE(host->takeRaised().empty());
}

INSTANTIATE_TEST_SUITE_P(All, CFExceptions,
                         testing::Values(Step::None, Step::Type, Step::Instance, Step::Retain));

} // namespace
