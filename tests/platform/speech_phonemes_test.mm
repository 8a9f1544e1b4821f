// The phonemes of a text, asked for through the synthesizer.

#include "tests/platform/speech_listener.h"
#include "tests/support/process_table.h"
#include "tests/support/pulse_server.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace {

using namespace zqm::platform::test;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::string phonemesOf(NSSpeechSynthesizer* synthesizer, const std::string& text) {
    NSString* const phonemes = [synthesizer phonemesFromText:stringOf(text)];
    EXPECT_NE(nil, phonemes) << text;
    return phonemes != nil ? [phonemes UTF8String] : "";
}

std::size_t countOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

TEST(SpeechPhonemes, AreInSymbols) {
    const Speaker speaker(@"gmw/en-US");
    EXPECT_EQ("_d1AOg.", phonemesOf(speaker.synthesizer, "dog"));
    EXPECT_EQ("_tw1EHlv.", phonemesOf(speaker.synthesizer, "12"));
    EXPECT_EQ("", phonemesOf(speaker.synthesizer, ""));
    EXPECT_EQ(nil, [speaker.synthesizer phonemesFromText:nil]);
}

TEST(SpeechPhonemes, AreThoseOfDictionariesAndModes) {
    const Speaker speaker(@"gmw/en-US");
    NSDictionary* const entry =
        [NSDictionary dictionaryWithObjectsAndKeys:@"dog", NSSpeechDictionaryEntrySpelling, @"kAEt",
                                                   NSSpeechDictionaryEntryPhonemes, nil];
    [speaker.synthesizer
        addSpeechDictionary:[NSDictionary dictionaryWithObjectsAndKeys:@"en_US",
                                                                       NSSpeechDictionaryLocaleIdentifier,
                                                                       @"2024-02-29 23:59:00 +0000",
                                                                       NSSpeechDictionaryModificationDate,
                                                                       [NSArray arrayWithObject:entry],
                                                                       NSSpeechDictionaryPronunciations,
                                                                       [NSArray array],
                                                                       NSSpeechDictionaryAbbreviations, nil]];
    EXPECT_EQ("_k1AEt.", phonemesOf(speaker.synthesizer, "dog"));
    EXPECT_EQ("_tw1EHlv.", phonemesOf(speaker.synthesizer, "12"));
    EXPECT_THAT(phonemesOf(speaker.synthesizer, "cab"), Not(HasSubstr("s2IY")));
    for (NSString* const mode : {NSSpeechNumberModeProperty, NSSpeechCharacterModeProperty}) {
        ASSERT_TRUE([speaker.synthesizer setObject:NSSpeechModeLiteral forProperty:mode error:nullptr]);
    }
    EXPECT_THAT(phonemesOf(speaker.synthesizer, "12"), AllOf(HasSubstr("w1UXn"), HasSubstr("t1UW")));
    EXPECT_THAT(phonemesOf(speaker.synthesizer, "cab"), AllOf(HasSubstr("s2IY"), HasSubstr("b1IY")));
}

TEST(SpeechPhonemes, AreThoseOfTheVoice) {
    Speaker speaker(@"gmw/en-US");
    const std::string english = phonemesOf(speaker.synthesizer, "Gift");
    ASSERT_TRUE([speaker.synthesizer setVoice:@"roa/fr"]);
    EXPECT_NE(english, phonemesOf(speaker.synthesizer, "Gift"));
}

TEST(SpeechPhonemes, AreThereForEveryVoice) {
    Speaker speaker;
    NSArray* const voices = [NSSpeechSynthesizer availableVoices];
    for (NSUInteger index = 0; index < [voices count]; ++index) {
        NSString* const voice = [voices objectAtIndex:index];
        NSString* const text = [[NSSpeechSynthesizer attributesForVoice:voice] objectForKey:NSVoiceDemoText];
        ASSERT_TRUE([speaker.synthesizer setVoice:voice]);
        EXPECT_GT([[speaker.synthesizer phonemesFromText:text != nil ? text : @"a"] length], 2U)
            << [voice UTF8String];
    }
}

TEST(SpeechPhonemes, OfALongTextAreAllOfThem) {
    const Speaker speaker(@"gmw/en-US");
    std::string text;
    for (int count = 0; count < 20'000; ++count) {
        text += "big dog ";
    }
    EXPECT_EQ(20'000U, countOf(phonemesOf(speaker.synthesizer, text), "d1AOg"));
    std::string line(100'000, 'a'); // with nowhere to part it
    EXPECT_FALSE(phonemesOf(speaker.synthesizer, line).empty());
}

TEST(SpeechPhonemes, CanBeSpoken) {
    const zqm::support::TemporaryFolder folder;
    Speaker speaker(@"gmw/en-US");
    const std::string text = "The quick brown fox jumps over the lazy dog.";
    const std::string phonemes = phonemesOf(speaker.synthesizer, text);
    ASSERT_TRUE(speaker.say(text, (folder / "text.wav").string()) && speaker.runToEnd(1));
    ASSERT_TRUE([speaker.synthesizer setObject:NSSpeechModePhoneme
                                   forProperty:NSSpeechInputModeProperty
                                         error:nullptr]);
    ASSERT_TRUE(speaker.say(phonemes, (folder / "phonemes.wav").string()) && speaker.runToEnd(2));
    const double seconds = zqm::support::SoundFile(folder / "text.wav").seconds();
    EXPECT_NEAR(zqm::support::SoundFile(folder / "phonemes.wav").seconds(), seconds, 0.1 * seconds);
    EXPECT_EQ(phonemes, phonemesOf(speaker.synthesizer, text)) << "the mode is of what is spoken";
}

TEST(SpeechPhonemes, AreToldWhileATextIsSpoken) {
    const zqm::support::PulseServer server;
    const zqm::support::ScopedPulseServer use(server);
    Speaker speaker(@"gmw/en-US");
    const std::string before = phonemesOf(speaker.synthesizer, "dog");
    ASSERT_TRUE(
        [speaker.synthesizer startSpeakingString:@"One two three four five six seven eight nine ten."]);
    ASSERT_TRUE(runUntil([&] { return speaker.heard.words.size() >= 2; }));
    EXPECT_EQ(before, phonemesOf(speaker.synthesizer, "dog"));
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_TRUE(speaker.heard.finished.front());
    EXPECT_EQ(10U, speaker.heard.words.size());
}

TEST(SpeechPhonemes, ComeFromANewEngineWhenTheOldOneIsGone) {
    Speaker speaker(@"gmw/en-US");
    const std::string before = phonemesOf(speaker.synthesizer, "dog");
    for (const pid_t engine : zqm::support::childrenOfThisProcess()) {
        ::kill(engine, SIGKILL);
    }
    EXPECT_EQ(before, phonemesOf(speaker.synthesizer, "dog"));
}

} // namespace
