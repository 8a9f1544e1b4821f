// The platform's speech properties as the host sees them: conversions, the error that comes back by
// reference, and the lines in the log.

#include "tests/speech/synthesizer_host.h"
#include "tests/support/log_lines.h"

#include <functional>
#include <sstream>

namespace {

using zqm::host::ByRef;
using zqm::host::ElementType;
using zqm::host::HostException;
using zqm::host::Object;
using zqm::host::Value;
using zqm::support::logged;

// What the platform object is asked, and what it answers instead of itself.
NSString* askedName = nil;
id givenValue = nil;
id answer = nil;
NSError* failure = nil;
BOOL accepted = NO;

id answerInstead(id, SEL, NSString* name, NSError** error) {
    keep(askedName, name);
    *error = failure;
    return answer;
}

BOOL acceptInstead(id, SEL, id value, NSString* name, NSError** error) {
    keep(givenValue, value);
    keep(askedName, name);
    *error = failure;
    return accepted;
}

std::string hex(id object) {
    std::ostringstream text;
    text << std::hex << reinterpret_cast<std::uintptr_t>(object);
    return text.str();
}

class SpeechProperties : public SynthesizerTest {
protected:
    void inProcess(const std::function<void(Object&)>& body) {
        zqm::support::inFreshProcess([&] {
            if (!zqm::support::siblingLibrary()) { // which would define it
                host->defineClass({.name = "NSErrorZQM", .dataSize = sizeof(id)});
            }
            replaceMethod(@selector(objectForProperty:error:), answerInstead);
            replaceMethod(@selector(setObject:forProperty:error:), acceptInstead);
            Object object = newSynthesizer();
            body(object);
        });
    }
    static NSError* someError() { return [NSError errorWithDomain:@"Domain" code:-245 userInfo:nil]; }
};

TEST_F(SpeechProperties, AreReadAndLogged) {
    inProcess([&](Object& object) {
        answer = [[NSNumber alloc] initWithInt:42];
        Value value;
        const auto lines = logged([&] { value = object.call("objectForProperty", "some key", ByRef{}); });
        EXPECT_EQ(value.asInteger(), 42);
        EXPECT_TRUE([askedName isEqualToString:@"some key"]);
        EXPECT_THAT(lines, testing::ElementsAre("k: some key", "v: 42 " + hex(answer), "e: (null)"));
    });
}

TEST_F(SpeechProperties, ReadAsNilAreLoggedAsNil) {
    inProcess([&](Object& object) {
        answer = nil;
        failure = someError();
        Value error;
        const auto lines =
            logged([&] { EXPECT_TRUE(object.call("objectForProperty", nullptr, ByRef{&error}).isNull()); });
        EXPECT_EQ(askedName, nil);
        ASSERT_EQ(lines.size(), 3U);
        EXPECT_EQ(lines[0], "k: (null)");
        EXPECT_EQ(lines[1], "v: (null) 0");
        EXPECT_TRUE(lines[2].starts_with("e: ")) << lines[2];
        EXPECT_NE(lines[2].find("Domain"), std::string::npos) << lines[2];
    });
}

TEST_F(SpeechProperties, HandTheErrorBackByReference) {
    inProcess([&](Object& object) {
        failure = someError();
        for (const bool reads : {true, false}) {
            Value error;
            reads ? object.call("objectForProperty", "key", ByRef{&error})
                  : object.call("setObjectForProperty", 1, "key", ByRef{&error});
            ASSERT_FALSE(error.isNull());
            EXPECT_EQ(error.asObject().className(), "NSErrorZQM");
            EXPECT_EQ(error.asObject().dataAs<NSError*>(), failure);
        }
    });
}

TEST_F(SpeechProperties, ClearTheErrorThatWasThereBefore) {
    inProcess([&](Object& object) {
        for (const bool constructed : {true, false}) {
            Object callee = constructed ? object : newObject();
            for (const bool reads : {true, false}) {
                failure = nil;
                const auto before = host->ledger();
                Value error(host->create("NSErrorZQM"));
                reads ? callee.call("objectForProperty", "key", ByRef{&error})
                      : callee.call("setObjectForProperty", 1, "key", ByRef{&error});
                EXPECT_TRUE(error.isNull());
                EXPECT_EQ(host->ledger(), before);
            }
        }
    });
}

TEST_F(SpeechProperties, AreSetAndLoggedBeforeAndAfter) {
    inProcess([&](Object& object) {
        for (const bool accepts : {true, false}) {
            accepted = accepts ? YES : NO;
            const auto lines = logged([&] {
                EXPECT_EQ(object.call("setObjectForProperty", "new", "some key", ByRef{}).asBool(), accepts);
            });
            EXPECT_TRUE([givenValue isEqual:@"new"]);
            EXPECT_TRUE([askedName isEqualToString:@"some key"]);
            EXPECT_THAT(lines, testing::ElementsAre("k: some key", "v: new " + hex(givenValue), "e: (null)"));
        }
    });
}

TEST_F(SpeechProperties, TakeNilForAValue) {
    inProcess([&](Object& object) {
        accepted = YES;
        const auto lines = logged([&] { object.call("setObjectForProperty", nullptr, "some key", ByRef{}); });
        EXPECT_EQ(givenValue, nil);
        EXPECT_THAT(lines, testing::ElementsAre("k: some key", "v: (null) 0", "e: (null)"));
    });
}

// The platform's arrays take no nil: their exception is the host's, and the platform object hears of nothing.
TEST_F(SpeechProperties, RaiseForAListWithANilElement) {
    inProcess([&](Object& object) {
        const std::string expectedClass = hostExceptionClass();
        for (const ElementType type : {ElementType::String, ElementType::Object}) {
            zqm::host::Array list = host->array(type, {});
            list.resize(1);
            Value error(host->create("NSErrorZQM"));
            try {
                object.call("setObjectForProperty", list, "some key", ByRef{&error});
                ADD_FAILURE() << "nothing raised";
            } catch (const HostException& exception) {
                EXPECT_EQ(exception.className(), expectedClass);
            }
            EXPECT_TRUE(error.isNull());
            EXPECT_EQ(askedName, nil);
        }
    });
}

} // namespace
