// A host program that waits for an event of a speech.

#include "tests/endtoend/speaking.h"

#include <gmock/gmock.h>

namespace zqm::endtoend {
namespace {

using host::Arguments;
using host::Object;
using host::Value;

class Waiting : public SpeakingTest {
protected:
    bool start(const std::string& text) {
        return object.call("startSpeakingString", text, fileUrl(file)).asBool();
    }

    void TearDown() override {
        object = Object();
        SpeakingTest::TearDown();
    }

    Object object = runtime.construct(kSynthesizer);
};

TEST_F(Waiting, NeedsNoHandler) {
    ASSERT_TRUE(start("Hello world"));
    const auto end = runtime.runUntilRaised(object, "didFinishSpeaking", kDeadline);
    ASSERT_TRUE(end.has_value());
    ASSERT_EQ(end->size(), 1U);
    EXPECT_TRUE(end->front().asBool());
}

TEST_F(Waiting, AnswersTheFirstThatComesAndLetsTheHandlerHearThemAll) {
    std::vector<std::int64_t> heard;
    object.on("willSpeakWord", [&](const Arguments& word) { heard.push_back(word[0].asInteger()); });
    ASSERT_TRUE(start("Hello world"));
    for (const std::int64_t position : {0, 6}) {
        const auto word = runtime.runUntilRaised(object, "WILLSPEAKWORD", kDeadline);
        ASSERT_TRUE(word.has_value());
        EXPECT_EQ(word->at(0).asInteger(), position);
        EXPECT_EQ(word->at(1).asInteger(), 5);
        EXPECT_EQ(word->at(2).asText(), "Hello world");
    }
    EXPECT_TRUE(runtime.runUntilRaised(object, "didFinishSpeaking", kDeadline).has_value());
    EXPECT_THAT(heard, testing::ElementsAre(0, 6));
}

TEST_F(Waiting, IsForOneObject) {
    Object other = runtime.construct(kSynthesizer);
    ASSERT_TRUE(other.call("startSpeakingString", longText(), fileUrl(folder / "other.wav")).asBool());
    ASSERT_TRUE(runtime.runUntilRaised(other, "willSpeakWord", kDeadline).has_value());
    ASSERT_TRUE(start("Hello world"));
    const auto word = runtime.runUntilRaised(object, "willSpeakWord", kDeadline);
    ASSERT_TRUE(word.has_value());
    EXPECT_EQ(word->at(2).asText(), "Hello world");
}

TEST_F(Waiting, IsOverWhenTheObjectEnds) {
    object.on("willSpeakWord", [&](const Arguments&) { object = Object(); });
    ASSERT_TRUE(start("Hello world"));
    EXPECT_FALSE(runtime.runUntilRaised(object, "didFinishSpeaking", kDeadline).has_value());
    EXPECT_TRUE(object.isNull());
}

TEST_F(Waiting, InAHandlerIsHeardOnBothLevels) {
    std::optional<std::vector<Value>> inner;
    object.on("willSpeakWord", [&](const Arguments& word) {
        if (word[0].asInteger() == 0) {
            inner = runtime.runUntilRaised(object, "didFinishSpeaking", kDeadline);
        }
    });
    ASSERT_TRUE(start("Hello world"));
    const auto outer = runtime.runUntilRaised(object, "didFinishSpeaking", kDeadline);
    EXPECT_TRUE(inner.has_value());
    EXPECT_TRUE(outer.has_value());
    EXPECT_EQ(object.timesRaised("didFinishSpeaking"), 1U);
}

} // namespace
} // namespace zqm::endtoend
