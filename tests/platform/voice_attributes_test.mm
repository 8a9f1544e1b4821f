// What is told about the voices, over all of them.

#include "tests/platform/speech_listener.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace zqm::platform::test;

struct Range {
    unsigned first;
    unsigned last;
};

std::vector<NSDictionary*> allVoices() {
    std::vector<NSDictionary*> voices;
    NSArray* const identifiers = [NSSpeechSynthesizer availableVoices];
    for (NSUInteger index = 0; index < [identifiers count]; ++index) {
        voices.push_back([NSSpeechSynthesizer attributesForVoice:[identifiers objectAtIndex:index]]);
    }
    return voices;
}

std::string textOf(NSDictionary* voice, NSVoiceAttributeKey key) {
    NSString* const text = [voice objectForKey:key];
    return text != nil ? [text UTF8String] : "";
}

std::vector<Range> rangesOf(NSDictionary* voice, NSVoiceAttributeKey key) {
    std::vector<Range> ranges;
    NSArray* const array = [voice objectForKey:key];
    for (NSUInteger index = 0; index < [array count]; ++index) {
        NSDictionary* const range = [array objectAtIndex:index];
        EXPECT_EQ(2U, [range count]);
        ranges.push_back({[[range objectForKey:@"UnicodeCharBegin"] unsignedIntValue],
                          [[range objectForKey:@"UnicodeCharEnd"] unsignedIntValue]});
    }
    return ranges;
}

bool contains(const std::vector<Range>& ranges, unsigned character) {
    return std::ranges::any_of(ranges, [character](const Range& range) {
        return range.first <= character && character <= range.last;
    });
}

// All of the Basic Multilingual Plane here.
std::vector<unsigned> charactersOf(const std::string& text) {
    NSString* const string = stringOf(text);
    std::vector<unsigned> characters;
    for (NSUInteger index = 0; index < [string length]; ++index) {
        characters.push_back([string characterAtIndex:index]);
    }
    return characters;
}

bool isLetter(unsigned character) {
    return [[NSCharacterSet letterCharacterSet] longCharacterIsMember:character] &&
           ![[NSCharacterSet nonBaseCharacterSet] longCharacterIsMember:character];
}

TEST(VoiceAttributes, AreThereForEveryVoice) {
    ASSERT_GT(allVoices().size(), 100U);
    for (NSDictionary* const voice : allVoices()) {
        const std::string name = textOf(voice, NSVoiceName);
        ASSERT_FALSE(name.empty());
        EXPECT_NE(' ', name.front()) << name;
        EXPECT_NE(' ', name.back()) << name;
        EXPECT_EQ(nil, [voice objectForKey:NSVoiceAge]) << name << ": the engine knows no ages";
        EXPECT_EQ("VoiceGenderMale", textOf(voice, NSVoiceGender)) << name;
    }
}

TEST(VoiceAttributes, TheDemoTextIsInTheLanguage) {
    const std::map<std::string, std::string> expected{
        {"gmw/de", "Hallo! Ich spreche Deutsch."},
        {"gmw/en", "Hello! I speak English."},
        {"gmw/en-US-nyc", "Hello! I speak English."},
        {"gmw/en-GB-x-rp", "Hello! I speak English."},
        {"roa/fr-CH", "Bonjour ! Je parle français."},
        {"roa/es-419", "¡Hola! Hablo español."},
        {"roa/pt", "Olá! Falo português."},
        {"roa/pt-BR", "Olá! Eu falo português."},
        {"ira/fa-Latn", "Salam! Man farsi sohbat mikonam."},
        {"sit/cmn", "你好！我说普通话。"},
        {"sit/cmn-Latn-pinyin", "Ni3 hao3! Wo3 shuo1 pu3tong1hua4."},
        {"aav/vi-VN-x-south", "Xin chào! Tôi nói tiếng Việt."},
        {"iro/chr", "Osiyo!"},
    };
    for (const auto& [identifier, text] : expected) {
        EXPECT_EQ(text,
                  textOf([NSSpeechSynthesizer attributesForVoice:stringOf(identifier)], NSVoiceDemoText))
            << identifier;
    }
}

TEST(VoiceAttributes, EveryVoiceSpeaksItsDemoText) {
    const std::set<std::string> without{"art/py"};
    const zqm::support::TemporaryFolder folder;
    const std::string path = (folder.path() / "demo.wav").string();
    Speaker speaker;
    std::size_t spoken = 0;
    for (NSDictionary* const voice : allVoices()) {
        const std::string identifier = textOf(voice, NSVoiceIdentifier);
        const std::string text = textOf(voice, NSVoiceDemoText);
        EXPECT_EQ(without.contains(identifier), [voice objectForKey:NSVoiceDemoText] == nil) << identifier;
        if (text.empty()) {
            continue;
        }
        speaker.heard.words.clear();
        ASSERT_TRUE([speaker.synthesizer setVoice:stringOf(identifier)]);
        ASSERT_TRUE(speaker.say(text, path)) << identifier;
        ASSERT_TRUE(speaker.runToEnd(++spoken)) << identifier;
        EXPECT_FALSE(speaker.heard.words.empty()) << identifier;
        EXPECT_GT(zqm::support::rms(zqm::support::SoundFile(path).samples), 0.005) << identifier;
    }
}

TEST(VoiceAttributes, TheDemoTextIsWrittenInSupportedCharacters) {
    for (NSDictionary* const voice : allVoices()) {
        const std::vector<Range> supported = rangesOf(voice, NSVoiceSupportedCharacters);
        const std::vector<Range> spelled = rangesOf(voice, NSVoiceIndividuallySpokenCharacters);
        for (const unsigned character : charactersOf(textOf(voice, NSVoiceDemoText))) {
            EXPECT_TRUE(contains(supported, character))
                << textOf(voice, NSVoiceIdentifier) << " lacks U+" << std::hex << character;
            EXPECT_TRUE(!isLetter(character) || contains(spelled, character))
                << textOf(voice, NSVoiceIdentifier) << " doesn't spell U+" << std::hex << character;
        }
    }
}

TEST(VoiceAttributes, TheRangesOfCharactersAscendAndKeepApart) {
    for (NSDictionary* const voice : allVoices()) {
        const std::vector<Range> supported = rangesOf(voice, NSVoiceSupportedCharacters);
        const std::vector<Range> spelled = rangesOf(voice, NSVoiceIndividuallySpokenCharacters);
        for (const auto& ranges : {supported, spelled}) {
            ASSERT_FALSE(ranges.empty()) << textOf(voice, NSVoiceIdentifier);
            for (std::size_t index = 0; index < ranges.size(); ++index) {
                EXPECT_LE(ranges[index].first, ranges[index].last);
                EXPECT_TRUE(index == 0 || ranges[index - 1].last + 1 < ranges[index].first);
            }
        }
        for (const Range& range : spelled) {
            for (unsigned character = range.first; character <= range.last; ++character) {
                ASSERT_TRUE(contains(supported, character));
            }
        }
    }
}

TEST(VoiceAttributes, EveryVoiceTakesDigitsAndPunctuation) {
    for (NSDictionary* const voice : allVoices()) {
        const std::vector<Range> supported = rangesOf(voice, NSVoiceSupportedCharacters);
        const std::vector<Range> spelled = rangesOf(voice, NSVoiceIndividuallySpokenCharacters);
        for (const unsigned character : charactersOf("0123456789.,;:!?'\"()-%&+/")) {
            EXPECT_TRUE(contains(supported, character) && contains(spelled, character))
                << textOf(voice, NSVoiceIdentifier) << " U+" << std::hex << character;
        }
        for (const unsigned character : charactersOf(" \n")) {
            EXPECT_TRUE(contains(supported, character)) << textOf(voice, NSVoiceIdentifier);
            EXPECT_FALSE(contains(spelled, character)) << textOf(voice, NSVoiceIdentifier);
        }
    }
}

TEST(VoiceAttributes, TheCharactersAreThoseOfTheLanguage) {
    struct Case {
        const char* voice;
        const char* in;
        const char* out;
    };
    for (const Case& each : std::vector<Case>{
             {"gmw/en-US", "azAZ", "жλ你あ한अ"},
             {"gmw/en-US-nyc", "azAZ", "жλ你あ한अ"},
             {"gmw/de", "azAZäÄöÖüÜß", "жλ"},
             {"zle/ru", "абяАЯёЁ", "aλ"},
             {"zle/uk", "абґїєҐ", "aλ"},
             {"grk/el", "αωάΩΆς", "aж"},
             {"grk/grc", "αωᾶᾳΩ", "aж"},
             {"sem/ar", "ابتيء٠٩", "aא"},
             {"sem/he", "אבגת", "aا"},
             {"inc/hi", "अकहि०९।", "aক"},
             {"inc/bpy", "অকহি০।", "aअ"},
             {"ine/hy", "աքԱՖ։", "aж"},
             {"ine/hyw", "աքԱՖ։", "aж"},
             {"jpx/ja", "あんアンー。", "日本a"},
             {"sit/cmn", "你好中国。", "aあ"},
             {"sit/cmn-Latn-pinyin", "azAZǎ", "你"},
             {"ira/fa", "پچژگ", "a"},
             {"ira/fa-Latn", "azAZ", "پ"},
             {"ko", "가한글", "aあ"},
             {"tai/th", "กฮะ", "a"},
             {"trk/nog", "абя", "aλ"},
             {"trk/tr", "ıİğĞşŞ", "жλ"},
             {"iro/chr", "azAZ", "Ꭳ"},
             {"art/jbo", "azAZ", "жλ"},
         }) {
        const std::vector<Range> ranges = rangesOf(
            [NSSpeechSynthesizer attributesForVoice:stringOf(each.voice)], NSVoiceSupportedCharacters);
        for (const unsigned character : charactersOf(each.in)) {
            EXPECT_TRUE(contains(ranges, character)) << each.voice << " U+" << std::hex << character;
        }
        for (const unsigned character : charactersOf(each.out)) {
            EXPECT_FALSE(contains(ranges, character)) << each.voice << " U+" << std::hex << character;
        }
    }
}

TEST(VoiceAttributes, TheVoicesAreInTheOrderOfTheirIdentifiers) {
    std::vector<std::string> identifiers;
    for (NSDictionary* const voice : allVoices()) {
        identifiers.push_back(textOf(voice, NSVoiceIdentifier));
    }
    EXPECT_TRUE(std::ranges::is_sorted(identifiers));
}

} // namespace
