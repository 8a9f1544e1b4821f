// Which functions of the host classes fetch the instances dictionary and prepare exceptions: a sibling
// library appears just before each of them.

#include "plugin/sibling_methods.h"
#include "tests/speech/documented_constants.h"
#include "tests/speech/synthesizer_host.h"

#include <objc/runtime.h>

namespace {

using zqm::host::ByRef;
using zqm::host::Object;

int fetched = 0;
int prepared = 0;
CFMutableDictionaryRef dictionary = nullptr;

CFMutableDictionaryRef fetchDictionary(id, SEL) {
    ++fetched;
    return dictionary;
}

void prepare(id, SEL) {
    ++prepared;
}

void raiseWhilePreparing(id, SEL) {
    [NSException raise:@"Preparing" format:@"failed"];
}

template <typename Function>
void addToNSException(SEL selector, Function function, const char* types) {
    ASSERT_TRUE(class_addMethod(object_getClass([NSException class]), selector,
                                reinterpret_cast<IMP>(reinterpret_cast<void*>(function)), types));
}

void addSibling() {
    dictionary = CFDictionaryCreateMutable(nullptr, 0, nullptr, nullptr);
    addToNSException(@selector(GetInstancesDictionaryZQM), fetchDictionary, "^v@:");
    addToNSException(@selector(PrepareNSExceptionZQM), prepare, "v@:");
}

class SetUpOf : public SynthesizerAloneTest, public testing::WithParamInterface<const char*> {};

TEST_P(SetUpOf, TheClassConstructorIsTheSharedOne) {
    zqm::support::inFreshProcess([this] {
        addSibling();
        const Object object = host->create(GetParam());
        EXPECT_EQ(fetched, 1);
        EXPECT_EQ(prepared, 1);
        const Object another = host->create(GetParam());
        EXPECT_EQ(fetched, 1);
        EXPECT_EQ(prepared, 1);
    });
}

TEST_P(SetUpOf, TheClassDestructorIsTheSharedOne) {
    zqm::support::inFreshProcess([this] {
        Object object = host->create(GetParam());
        addSibling();
        object.reset();
        EXPECT_EQ(fetched, 1);
        EXPECT_EQ(prepared, 1);
    });
}

TEST_P(SetUpOf, TheClassIsGuarded) {
    zqm::support::inFreshProcess([this] {
        const auto before = host->ledger();
        addToNSException(@selector(PrepareNSExceptionZQM), raiseWhilePreparing, "v@:");
        Object object = host->create(GetParam());
        object.reset();
        EXPECT_EQ(host->ledger(), before);
    });
}

INSTANTIATE_TEST_SUITE_P(Classes, SetUpOf,
                         testing::Values("NSSpeechRecognizerZQM", "NSVoiceZQM", "NSSpeechSynthesizerZQM"),
                         [](const auto& row) { return std::string(row.param); });

using SetUpOfSynthesizer = SynthesizerAloneTest;

TEST_F(SetUpOfSynthesizer, RunsInTheConstructorMethodsWhichEnterTheObject) {
    for (const bool named : {false, true}) {
        zqm::support::inFreshProcess([&] {
            Object object = newObject();
            addSibling();
            if (named) {
                object.call("Constructor", [[NSSpeechSynthesizer defaultVoice] UTF8String]);
            } else {
                object.call("Constructor");
            }
            EXPECT_EQ(fetched, 1);
            EXPECT_EQ(prepared, 1);
            MyNSSpeechSynthesizer* const synthesizer = platformObjectOf(object);
            EXPECT_EQ(CFDictionaryGetValue(dictionary, synthesizer), object.handle());
            object.reset();
            EXPECT_EQ(CFDictionaryGetCount(dictionary), 0);
        });
    }
}

TEST_F(SetUpOfSynthesizer, OpensEachVoiceMethod) {
    const std::vector<std::vector<const char*>> methods = {
        {"isAnyApplicationSpeaking"},
        {"availableVoicesCount"},
        {"attributesForVoice", "no such voice"},
        {"defaultVoice"},
        {"availableVoices"},
    };
    for (const auto& method : methods) {
        zqm::support::inFreshProcess([&] {
            addSibling();
            const std::vector<zqm::host::Value> arguments(std::next(method.begin()), method.end());
            host->callSharedWith("NSSpeechSynthesizerZQM", method.front(), arguments);
            EXPECT_EQ(fetched, 1) << method.front();
            EXPECT_EQ(prepared, 1) << method.front();
        });
    }
    zqm::support::inFreshProcess([&] {
        addSibling();
        host->callShared("NSSpeechSynthesizerZQM", "availableVoice", 0);
        EXPECT_EQ(fetched, 1);
        EXPECT_EQ(prepared, 1);
    });
}

TEST_F(SetUpOfSynthesizer, ComesAfterTheTestForAnInitialisedObject) {
    zqm::support::inFreshProcess([this] {
        Object object = newSynthesizer();
        addSibling();
        EXPECT_THROW(object.call("Constructor"), zqm::host::HostException);
        EXPECT_EQ(fetched, 0);
        EXPECT_EQ(prepared, 0);
    });
}

TEST_F(SetUpOfSynthesizer, IsSkippedByEveryOtherMember) {
    zqm::support::inFreshProcess([this] {
        Object object = newSynthesizer();
        addSibling();
        object.get("Volume");
        object.set("Volume", 0.5);
        object.get("isSpeaking");
        object.get("voice");
        object.call("stopSpeaking");
        object.call("stopSpeakingAtBoundary", 0);
        object.call("pauseSpeakingAtBoundary", 0);
        object.call("continueSpeaking");
        object.call("setVoice", "no such voice");
        object.call("phonemesFromText", "text");
        object.call("objectForProperty", "rate", ByRef{});
        object.call("setObjectForProperty", 200, "rate", ByRef{});
        object.call("addSpeechDictionary", host->dictionary());
        object.call("startSpeakingString", "text", "no url");
        object.call("Destructor");
        for (const DocumentedConstant& constant : kDocumentedConstants) {
            host->callShared(constant.className, constant.method);
        }
        EXPECT_EQ(fetched, 0);
        EXPECT_EQ(prepared, 0);
    });
}

} // namespace
