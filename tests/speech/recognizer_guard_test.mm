// Every member of a recognizer that sends the platform a message, while that message raises.

#include "tests/speech/recognizer_host.h"

#include <functional>
#include <objc/runtime.h>
#include <utility>

namespace {

using zqm::host::HostException;
using zqm::host::Object;
using zqm::host::Value;

struct Member {
    const char* name;
    const char* message; // of the platform object
    std::function<Value(Object&)> use;
    bool makesTheRecognizer = false;
};

std::ostream& operator<<(std::ostream& out, const Member& member) {
    return out << member.name;
}

Value construct(Object& object) {
    NSSpeechRecognizerClass.constructor(object.handle());
    return {};
}

Value destruct(Object& object) {
    NSSpeechRecognizerClass.destructor(object.handle());
    return {};
}

const std::vector<Member>& members() {
    static const std::vector<Member> all = {
        {"ConstructorInit", "init", construct, true},
        {"ConstructorDelegate", "setDelegate:", construct, true},
        {"Destructor", "clearTarget", [](Object& o) { return o.call("Destructor"); }},
        {"ClassDestructor", "release", destruct},
        {"getCommands", "commands", [](Object& o) { return o.call("commands"); }},
        {"setCommandsToNone", "setCommands:", [](Object& o) { return o.call("setCommands", Object()); }},
        {"startListening", "startListening", [](Object& o) { return o.call("startListening"); }},
        {"stopListening", "stopListening", [](Object& o) { return o.call("stopListening"); }},
        {"getListensInForegroundOnly", "listensInForegroundOnly",
         [](Object& o) { return o.get("listensInForegroundOnly"); }},
        {"setListensInForegroundOnly", "setListensInForegroundOnly:",
         [](Object& o) { return o.set("listensInForegroundOnly", true), Value(); }},
        {"getDisplayedCommandsTitle", "displayedCommandsTitle",
         [](Object& o) { return o.get("displayedCommandsTitle"); }},
        {"setDisplayedCommandsTitle", "setDisplayedCommandsTitle:",
         [](Object& o) { return o.set("displayedCommandsTitle", "title"), Value(); }},
        {"getBlocksOtherRecognizers", "blocksOtherRecognizers",
         [](Object& o) { return o.get("blocksOtherRecognizers"); }},
        {"setBlocksOtherRecognizers", "setBlocksOtherRecognizers:",
         [](Object& o) { return o.set("blocksOtherRecognizers", true), Value(); }},
    };
    return all;
}

id raiseInstead(id self, SEL selector) {
    if (sel_isEqual(selector, @selector(init))) {
        [self release]; // as an initialiser does that gives up
    }
    [NSException raise:@"FromThePlatform" format:@"on purpose"];
    return nil;
}

void sendToSuper(id self, SEL selector) {
    const IMP inherited =
        method_getImplementation(class_getInstanceMethod([NSSpeechRecognizer class], selector));
    reinterpret_cast<void (*)(id, SEL)>(reinterpret_cast<void*>(inherited))(self, selector);
}

bool hasRaised = false;

// The object's end releases it again.
void raiseOnce(id self, SEL selector) {
    if (!std::exchange(hasRaised, true)) {
        raiseInstead(self, selector);
    }
    sendToSuper(self, selector);
}

void raiseFor(const Member& member) {
    const SEL selector = sel_registerName(member.message);
    if (sel_isEqual(selector, @selector(release))) {
        replaceMethod(selector, raiseOnce);
    } else {
        replaceMethod(selector, raiseInstead);
    }
}

int ended = 0;

void countEnd(id self, SEL selector) {
    ++ended;
    sendToSuper(self, selector);
}

class Guard : public RecognizerTest, public testing::WithParamInterface<Member> {};

TEST_P(Guard, RaisesOneHostExceptionAndAnswersNeutrally) {
    zqm::support::inFreshProcess([this] {
        const std::string expectedClass = hostExceptionClass();
        Object object = GetParam().makesTheRecognizer ? newRawObject() : newRecognizer();
        raiseFor(GetParam());
        const auto before = host->ledger();
        try {
            host->guarded([&] { GetParam().use(object); });
            ADD_FAILURE() << "nothing raised";
        } catch (const HostException& exception) {
            EXPECT_EQ(exception.all().size(), 1U);
            EXPECT_EQ(exception.className(), expectedClass);
        }
        EXPECT_EQ(host->ledger(), before);
        EXPECT_THAT(host->takeRaised(), testing::IsEmpty());
    });
}

// Without a sibling nothing is raised, so that the answer itself can be seen.
class GuardAlone : public RecognizerAloneTest, public testing::WithParamInterface<Member> {};

TEST_P(GuardAlone, AnswersNeutrallyWhereOnlyALogLineIsWritten) {
    zqm::support::inFreshProcess([this] {
        Object object = GetParam().makesTheRecognizer ? newRawObject() : newRecognizer();
        raiseFor(GetParam());
        if (GetParam().makesTheRecognizer) {
            replaceMethod(@selector(dealloc), countEnd);
        }
        const Value answer = GetParam().use(object);
        if (const bool* truth = std::get_if<bool>(&answer.content())) {
            EXPECT_FALSE(*truth);
        } else {
            EXPECT_TRUE(answer.isNull());
        }
        if (GetParam().makesTheRecognizer) {
            EXPECT_EQ(platformObjectOf(object), nil);
            EXPECT_EQ(ended, 1) << "what was made is kept by nobody";
        }
    });
}

std::string nameOf(const testing::TestParamInfo<Member>& row) {
    return row.param.name;
}
INSTANTIATE_TEST_SUITE_P(Members, Guard, testing::ValuesIn(members()), nameOf);
INSTANTIATE_TEST_SUITE_P(Members, GuardAlone, testing::ValuesIn(members()), nameOf);

} // namespace
