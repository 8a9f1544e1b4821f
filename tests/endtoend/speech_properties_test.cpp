// The platform's speech properties through the library: what they hold, the error by reference, and the lines
// in the log.

#include "tests/endtoend/speaking.h"
#include "tests/support/log_lines.h"
#include "tests/support/sibling_library.h"

#include <gmock/gmock.h>

namespace zqm::endtoend {
namespace {

using host::Array;
using host::ByRef;
using host::Dictionary;
using host::Object;
using host::Value;
using support::logged;
using testing::ElementsAre;
using testing::MatchesRegex;
using testing::StartsWith;

class SpeechProperties : public SpeakingTest {
protected:
    Object object = runtime.construct(kSynthesizer, "gmw/en-US");

    void TearDown() override {
        object = Object();
        SpeakingTest::TearDown();
    }

    // The platform's own string for a key.
    std::string key(const char* constant) { return runtime.callShared(kSynthesizer, constant).asText(); }
    Value read(const char* constant) {
        Value value;
        logged([&] { value = object.call("objectForProperty", key(constant), ByRef{}); });
        return value;
    }
    bool write(const Value& value, const char* constant) {
        bool done = false;
        logged([&] { done = object.call("setObjectForProperty", value, key(constant), ByRef{}).asBool(); });
        return done;
    }
};

TEST_F(SpeechProperties, KeepWhatIsSet) {
    EXPECT_TRUE(write(222.5, "NSSpeechRateProperty"));
    EXPECT_EQ(read("NSSpeechRateProperty").asDouble(), 222.5);
    EXPECT_EQ(object.get("Rate").asDouble(), 222.5);
    EXPECT_TRUE(write(60, "NSSpeechPitchBaseProperty"));
    EXPECT_EQ(read("NSSpeechPitchBaseProperty").asDouble(), 60);
    EXPECT_TRUE(write("LTRL", "NSSpeechNumberModeProperty"));
    EXPECT_EQ(read("NSSpeechNumberModeProperty").asText(), key("NSSpeechModeLiteral"));
    EXPECT_TRUE(write(nullptr, "NSSpeechResetProperty"));
    EXPECT_EQ(read("NSSpeechNumberModeProperty").asText(), key("NSSpeechModeNormal"));
}

TEST_F(SpeechProperties, AreStructuresToo) {
    const Dictionary status(read("NSSpeechStatusProperty").asObject());
    EXPECT_EQ(status.value(key("NSSpeechStatusNumberOfCharactersLeft")).asInteger(), 0);
    const Array symbols(read("NSSpeechPhonemeSymbolsProperty").asObject());
    ASSERT_EQ(symbols.size(), 42U);
    const Dictionary bat(symbols.at(2).asObject());
    EXPECT_EQ(bat.value(key("NSSpeechPhonemeInfoOpcode")).asInteger(), 2);
    EXPECT_EQ(bat.value(key("NSSpeechPhonemeInfoSymbol")).asText(), "AE");
    EXPECT_EQ(bat.value(key("NSSpeechPhonemeInfoExample")).asText(), "bat");
}

TEST_F(SpeechProperties, AreLogged) {
    object.set("Rate", 200);
    EXPECT_THAT(logged([&] { object.call("objectForProperty", "rate", ByRef{}); }),
                ElementsAre("k: rate", MatchesRegex("v: 200 [0-9a-f]+"), "e: (null)"));
    EXPECT_THAT(logged([&] { object.call("setObjectForProperty", 180, "rate", ByRef{}); }),
                ElementsAre("k: rate", MatchesRegex("v: 180 [0-9a-f]+"), "e: (null)"));
    EXPECT_THAT(logged([&] { object.call("objectForProperty", "none", ByRef{}); }),
                ElementsAre("k: none", "v: (null) 0", StartsWith("e: ")));
    EXPECT_THAT(logged([&] { object.call("objectForProperty", host::String(), ByRef{}); }),
                ElementsAre("k: (null)", "v: (null) 0", StartsWith("e: ")));
}

TEST_F(SpeechProperties, TellTheirErrorsByReference) {
    const bool hasErrors = support::siblingLibrary().has_value();
    Value error;
    logged([&] { EXPECT_TRUE(object.call("objectForProperty", "none", ByRef{&error}).isNull()); });
    EXPECT_EQ(!error.isNull(), hasErrors);
    if (hasErrors) {
        EXPECT_TRUE(error.asObject().isA("NSErrorZQM"));
    }
    // The one from before is given back, and there is no new one.
    logged([&] { object.call("setObjectForProperty", 180, "rate", ByRef{&error}); });
    EXPECT_TRUE(error.isNull());
    logged(
        [&] { EXPECT_FALSE(object.call("setObjectForProperty", "fast", "rate", ByRef{&error}).asBool()); });
    EXPECT_EQ(!error.isNull(), hasErrors);
    Object unconstructed = runtime.create(kSynthesizer);
    logged([&] { unconstructed.call("objectForProperty", "none", ByRef{&error}); });
    EXPECT_TRUE(error.isNull());
}

} // namespace
} // namespace zqm::endtoend
