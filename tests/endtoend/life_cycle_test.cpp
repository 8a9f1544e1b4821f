#include "tests/endtoend/speaking.h"

#include <gmock/gmock.h>

namespace zqm::endtoend {
namespace {

using host::HostException;
using host::Object;
using host::String;

class LifeCycle : public SpeakingTest {
protected:
    Object object = runtime.create(kSynthesizer);

    void TearDown() override {
        object = Object();
        SpeakingTest::TearDown();
    }
};

TEST_F(LifeCycle, UnconstructedObjectAnswersNeutrally) {
    EXPECT_FALSE(object.call("startSpeakingString", "x").asBool());
    EXPECT_FALSE(object.call("startSpeakingString", "x", fileUrl(file)).asBool());
    EXPECT_FALSE(std::filesystem::exists(file));
    object.set("Rate", 100);
    object.set("Volume", 0.5);
    object.set("voice", "gmw/de");
    EXPECT_EQ(object.get("Rate").asDouble(), 0);
    EXPECT_EQ(object.get("Volume").asDouble(), 0);
    EXPECT_FALSE(object.get("isSpeaking").asBool());
    EXPECT_TRUE(object.get("voice").isNull());
    object.call("stopSpeaking");
    object.call("Destructor");
}

TEST_F(LifeCycle, SecondConstructorRaisesAndKeepsTheFirst) {
    object.call("Constructor", "gmw/de");
    for (const bool withVoice : {false, true}) {
        try {
            withVoice ? object.call("Constructor", "gmw/en-US") : object.call("Constructor");
            ADD_FAILURE() << "nothing was raised";
        } catch (const HostException& exception) {
            EXPECT_EQ(exception.className(), "UnsupportedOperationException");
            EXPECT_EQ(exception.message(), "Constructor called too often. Object is already initialized.");
            EXPECT_EQ(exception.errorNumber(), 0);
            EXPECT_EQ(exception.all().size(), 1U);
        }
    }
    EXPECT_EQ(object.get("voice").asText(), "gmw/de");
}

TEST_F(LifeCycle, UnknownVoiceLeavesItUnconstructedUntilAnotherTry) {
    object.call("Constructor", "no such voice");
    EXPECT_TRUE(object.get("voice").isNull());
    EXPECT_FALSE(object.call("startSpeakingString", "x", fileUrl(file)).asBool());
    object.call("Constructor");
    EXPECT_FALSE(object.get("voice").isNull());
}

TEST_F(LifeCycle, NoStringMeansTheDefaultVoice) {
    object.call("Constructor", String());
    Object other = runtime.create(kSynthesizer);
    other.call("Constructor");
    EXPECT_NE(object.get("voice").asText(), "");
    EXPECT_EQ(object.get("voice").asText(), other.get("voice").asText());
}

TEST_F(LifeCycle, PropertiesKeepSinglePrecision) {
    object.call("Constructor");
    object.set("Volume", 0.1);
    EXPECT_EQ(object.get("Volume").asDouble(), static_cast<double>(0.1F));
    object.set("Rate", 123.5);
    EXPECT_EQ(object.get("Rate").asDouble(), 123.5);
    EXPECT_THROW(object.set("isSpeaking", true), host::CallError);
}

TEST_F(LifeCycle, AfterDestructorNoEventComes) {
    Speaker speaker(runtime);
    ASSERT_TRUE(speaker.start(longText(), file));
    ASSERT_TRUE(speaker.waitForWord());
    speaker.object.call("Destructor");
    const std::size_t words = speaker.words.size();
    speaker.object.call("stopSpeaking");
    runtime.runFor(host::Seconds(0.3));
    EXPECT_EQ(speaker.words.size(), words);
    EXPECT_TRUE(speaker.ends.empty());
}

TEST_F(LifeCycle, ConstantsAreTheBoundaries) {
    EXPECT_EQ(runtime.constant(kSynthesizer, "NSSpeechImmediateBoundary"), "0");
    EXPECT_EQ(runtime.constant(kSynthesizer, "NSSpeechWordBoundary"), "1");
    EXPECT_EQ(runtime.constant(kSynthesizer, "NSSpeechSentenceBoundary"), "2");
}

TEST_F(LifeCycle, ExceptionMemberAnswersNil) {
    EXPECT_TRUE(object.call("_exception").isNull());
}

} // namespace
} // namespace zqm::endtoend
