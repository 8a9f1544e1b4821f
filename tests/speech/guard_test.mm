// Every member that sends the platform a message, while that message raises.

#include "plugin/platform_guard.h"
#include "plugin/sibling_methods.h"
#include "speech/platform_constants.h"
#include "speech/records.h"
#include "tests/speech/synthesizer_host.h"

#include <functional>
#include <objc/runtime.h>
#include <ostream>

namespace {

using zqm::host::ByRef;
using zqm::host::HostException;
using zqm::host::Object;
using zqm::host::Value;

struct Member {
    const char* name;
    const char* message; // of the platform object, or of its class
    std::function<Value(Object&)> use;
    bool needsConstruction = true;
};

std::ostream& operator<<(std::ostream& out, const Member& member) {
    return out << member.name;
}

const std::vector<Member>& members() {
    static const std::vector<Member> all = {
        {"startSpeakingString",
         "startSpeakingString:", [](Object& o) { return o.call("startSpeakingString", "text"); }},
        {"startSpeakingStringURL", "startSpeakingString:toURL:",
         [](Object& o) { return o.call("startSpeakingString", "text", "file:///tmp/never"); }},
        {"startSpeakingStringFile", "startSpeakingString:toURL:",
         [](Object& o) { return o.call("startSpeakingString", "text", Object()); }},
        {"pauseSpeakingAtBoundary",
         "pauseSpeakingAtBoundary:", [](Object& o) { return o.call("pauseSpeakingAtBoundary", 1); }},
        {"stopSpeakingAtBoundary",
         "stopSpeakingAtBoundary:", [](Object& o) { return o.call("stopSpeakingAtBoundary", 1); }},
        {"continueSpeaking", "continueSpeaking", [](Object& o) { return o.call("continueSpeaking"); }},
        {"phonemesFromText",
         "phonemesFromText:", [](Object& o) { return o.call("phonemesFromText", "text"); }},
        {"addSpeechDictionary",
         "addSpeechDictionary:", [](Object& o) { return o.call("addSpeechDictionary", nullptr); }},
        {"objectForProperty",
         "objectForProperty:error:", [](Object& o) { return o.call("objectForProperty", "any", ByRef{}); }},
        {"setObjectForProperty", "setObject:forProperty:error:",
         [](Object& o) { return o.call("setObjectForProperty", 1, "any", ByRef{}); }},
        {"setVoiceMethod", "setVoice:", [](Object& o) { return o.call("setVoice", "any"); }},
        {"stopSpeaking", "stopSpeaking", [](Object& o) { return o.call("stopSpeaking"); }},
        {"Constructor", "initWithVoice:andTarget:", [](Object& o) { return o.call("Constructor"); }, false},
        {"Destructor", "clearTarget", [](Object& o) { return o.call("Destructor"); }},
        {"getVolume", "volume", [](Object& o) { return o.get("Volume"); }},
        {"setVolume", "setVolume:", [](Object& o) { return o.set("Volume", 1), Value(); }},
        {"getRate", "rate", [](Object& o) { return o.get("Rate"); }},
        {"setRate", "setRate:", [](Object& o) { return o.set("Rate", 1), Value(); }},
        {"isSpeaking", "isSpeaking", [](Object& o) { return o.get("isSpeaking"); }},
        {"getUsesFeedbackWindow", "usesFeedbackWindow",
         [](Object& o) { return o.get("usesFeedbackWindow"); }},
        {"setUsesFeedbackWindow",
         "setUsesFeedbackWindow:", [](Object& o) { return o.set("usesFeedbackWindow", true), Value(); }},
        {"getVoice", "voice", [](Object& o) { return o.get("voice"); }},
        {"setVoice", "setVoice:", [](Object& o) { return o.set("voice", "any"), Value(); }},
    };
    return all;
}

id raiseInstead(id self, SEL selector) {
    if (sel_isEqual(selector, @selector(initWithVoice:andTarget:))) {
        [self release]; // as an initialiser does that gives up
    }
    [NSException raise:@"FromThePlatform" format:@"on purpose"];
    return nil;
}

class Guard : public SynthesizerTest, public testing::WithParamInterface<Member> {};

TEST_P(Guard, RaisesOneHostExceptionAndAnswersNeutrally) {
    zqm::support::inFreshProcess([this] {
        const std::string expectedClass = hostExceptionClass();
        Object object = GetParam().needsConstruction ? newSynthesizer() : newObject();
        replaceMethod(sel_registerName(GetParam().message), raiseInstead);
        const auto before = host->ledger();
        try {
            GetParam().use(object);
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
class GuardAlone : public SynthesizerAloneTest, public testing::WithParamInterface<Member> {};

TEST_P(GuardAlone, AnswersNeutrallyWhereOnlyALogLineIsWritten) {
    zqm::support::inFreshProcess([this] {
        Object object = GetParam().needsConstruction ? newSynthesizer() : newObject();
        replaceMethod(sel_registerName(GetParam().message), raiseInstead);
        const Value answer = GetParam().use(object);
        const auto& content = answer.content();
        if (const bool* truth = std::get_if<bool>(&content)) {
            EXPECT_FALSE(*truth);
        } else if (const double* number = std::get_if<double>(&content)) {
            EXPECT_EQ(*number, 0.0);
        } else {
            EXPECT_TRUE(answer.isNull());
        }
        if (!GetParam().needsConstruction) {
            EXPECT_EQ(platformObjectOf(object), nil);
        }
    });
}

std::string nameOf(const testing::TestParamInfo<Member>& row) {
    return row.param.name;
}
INSTANTIATE_TEST_SUITE_P(Members, Guard, testing::ValuesIn(members()), nameOf);
INSTANTIATE_TEST_SUITE_P(Members, GuardAlone, testing::ValuesIn(members()), nameOf);

NSException* prepared = nil;

id raisePrepared(id, SEL) {
    [prepared raise];
    return nil;
}

// They only hand on a string, so nothing of the platform's can fail in them but the string itself.
TEST(GuardOfConstants, IsNotThere) {
    zqm::support::inFreshProcess([] {
        AutoreleasePool pool;
        prepared = [NSException exceptionWithName:@"FromThePlatform" reason:@"on purpose" userInfo:nil];
        class_replaceMethod([platformConstant(&NSVoiceName) class], @selector(length),
                            reinterpret_cast<IMP>(reinterpret_cast<void*>(raisePrepared)), "Q@:");
        for (const ClassRecord* record : {&NSSpeechSynthesizerClass, &NSVoiceClass}) {
            const auto getter =
                reinterpret_cast<REALstring (*)()>(record->sharedMethods[0].function.address());
            EXPECT_EQ(runUnderPlatformGuard([&] { getter(); }), prepared) << record->name;
        }
    });
}

} // namespace
