// The voices that the library tells of, by its shared methods and voice objects.

#include "tests/endtoend/speaking.h"

#include <algorithm>
#include <limits>

namespace zqm::endtoend {
namespace {

using host::Array;
using host::Dictionary;
using host::HostException;
using host::Object;
using host::Value;

constexpr const char* kVoice = "NSVoiceZQM";

class Voices : public SpeakingTest {
protected:
    template <typename... Arguments>
    Value ask(const char* method, Arguments... arguments) {
        return runtime.callShared(kSynthesizer, method, arguments...);
    }
};

TEST_F(Voices, AreListedAlikeEveryWay) {
    const Array list(ask("availableVoices").asObject());
    ASSERT_GT(list.size(), 50U);
    EXPECT_EQ(ask("availableVoicesCount").asSize(), list.size());
    bool hasDefault = false;
    const std::string byDefault = ask("defaultVoice").asText();
    for (std::size_t index = 0; index < list.size(); ++index) {
        const std::string voice = list.at(index).asText();
        EXPECT_EQ(ask("availableVoice", index).asText(), voice);
        hasDefault = hasDefault || voice == byDefault;
    }
    EXPECT_TRUE(hasDefault) << byDefault;
}

TEST_F(Voices, OutOfRangeRaise) {
    const auto count = static_cast<std::int64_t>(ask("availableVoicesCount").asSize());
    for (const std::int64_t index : {std::int64_t{-1}, count, std::numeric_limits<std::int64_t>::min(),
                                     std::numeric_limits<std::int64_t>::max()}) {
        try {
            ask("availableVoice", index);
            ADD_FAILURE() << index;
        } catch (const HostException& exception) {
            EXPECT_EQ(exception.className(), "OutOfBoundsException") << index;
        }
    }
}

TEST_F(Voices, UnknownAnswerNil) {
    EXPECT_TRUE(ask("attributesForVoice", "no such voice").isNull());
    EXPECT_TRUE(ask("attributesForVoice", host::String()).isNull());
}

TEST_F(Voices, TellTheirAttributes) {
    for (const Value& identifier : Array(ask("availableVoices").asObject()).values()) {
        SCOPED_TRACE(identifier.asText());
        Object voice = ask("attributesForVoice", identifier.asText()).asObject();
        ASSERT_TRUE(voice.isA(kVoice));
        EXPECT_EQ(voice.call("Identifier").asText(), identifier.asText());
        EXPECT_FALSE(voice.call("Name").asText().empty());
        const std::string language = voice.call("Language").asText();
        EXPECT_FALSE(language.empty());
        std::string locale = language;
        std::replace(locale.begin(), locale.end(), '-', '_');
        EXPECT_EQ(voice.call("LocaleIdentifier").asText(), locale);
        const std::string gender = voice.call("Gender").asText();
        EXPECT_TRUE(gender == runtime.callShared(kVoice, "GenderMale").asText() ||
                    gender == runtime.callShared(kVoice, "GenderFemale").asText() ||
                    gender == runtime.callShared(kVoice, "GenderNeuter").asText())
            << gender;
        EXPECT_GE(voice.call("Age").asInteger(), 0);
    }
}

TEST_F(Voices, GiveTheirPropertiesAsANewDictionary) {
    const std::string key = runtime.callShared(kVoice, "NSVoiceIdentifier").asText();
    Object voice = ask("attributesForVoice", "gmw/en-US").asObject();
    Dictionary properties(voice.call("Properties").asObject());
    EXPECT_EQ(properties.value(key).asText(), "gmw/en-US");
    const std::string characters = runtime.callShared(kVoice, "NSVoiceSupportedCharacters").asText();
    EXPECT_GT(Array(properties.value(characters).asObject()).size(), 0U);
    properties.setValue(key, "changed");
    EXPECT_EQ(Dictionary(voice.call("Properties").asObject()).value(key).asText(), "gmw/en-US");
    EXPECT_EQ(voice.call("Identifier").asText(), "gmw/en-US");
}

TEST_F(Voices, AreUnfilledWhereTheHostMakesThem) {
    Object voice = runtime.create(kVoice);
    EXPECT_TRUE(voice.call("Name").isNull());
    EXPECT_EQ(voice.call("Age").asInteger(), 0);
    EXPECT_TRUE(voice.call("Properties").isNull());
    EXPECT_THROW(runtime.construct(kVoice), host::CallError);
}

TEST_F(Voices, SpeakTheirDemoTexts) {
    for (const char* identifier : {"gmw/en-US", "gmw/de", "roa/fr"}) {
        Object voice = ask("attributesForVoice", identifier).asObject();
        const std::string text = voice.call("DemoText").asText();
        ASSERT_FALSE(text.empty()) << identifier;
        Speaker speaker(runtime, identifier);
        speaker.speak(text, file);
        EXPECT_FALSE(speaker.words.empty()) << identifier;
    }
}

} // namespace
} // namespace zqm::endtoend
