// Which voices there are, and which one speaks.

#include "tests/platform/speech_fixture.h"
#include "tests/support/scoped_environment.h"

#include <set>
#include <string>

namespace {

using namespace zqm::platform::test;
using zqm::support::ScopedEnvironment;

TEST(Voices, AreListed) {
    NSArray* const voices = [NSSpeechSynthesizer availableVoices];
    ASSERT_GT([voices count], 50U);
    std::set<std::string> seen;
    for (NSUInteger index = 0; index < [voices count]; ++index) {
        NSString* const voice = [voices objectAtIndex:index];
        EXPECT_TRUE(seen.insert([voice UTF8String]).second);
        NSDictionary* const attributes = [NSSpeechSynthesizer attributesForVoice:voice];
        EXPECT_TRUE([[attributes objectForKey:NSVoiceIdentifier] isEqual:voice]);
        EXPECT_GT([[attributes objectForKey:NSVoiceName] length], 0U);
        NSString* const language = [attributes objectForKey:NSVoiceLanguage];
        EXPECT_GT([language length], 0U);
        EXPECT_TRUE([[[attributes objectForKey:NSVoiceLocaleIdentifier]
            stringByReplacingOccurrencesOfString:@"_"
                                      withString:@"-"] isEqualToString:language]);
        NSString* const gender = [attributes objectForKey:NSVoiceGender];
        EXPECT_TRUE([gender isEqual:NSVoiceGenderMale] || [gender isEqual:NSVoiceGenderFemale] ||
                    [gender isEqual:NSVoiceGenderNeuter]);
    }
    EXPECT_TRUE([voices isEqual:[NSSpeechSynthesizer availableVoices]]);
}

TEST(Voices, UnknownOnesAreNil) {
    EXPECT_EQ(nil, [NSSpeechSynthesizer attributesForVoice:@"none"]);
    EXPECT_EQ(nil, [NSSpeechSynthesizer attributesForVoice:@""]);
    EXPECT_EQ(nil, [NSSpeechSynthesizer attributesForVoice:nil]);
    EXPECT_EQ(nil, [[NSSpeechSynthesizer alloc] initWithVoice:@"none"]);
    EXPECT_EQ(nil, [[NSSpeechSynthesizer alloc] initWithVoice:@""]);
}

TEST(Voices, TheDefaultFollowsTheLocale) {
    struct Case {
        const char* all;
        const char* messages;
        const char* language;
        const char* voice;
    };
    for (const Case& each :
         {Case{"de_DE.UTF-8", "fr_FR", "it_IT", "gmw/de"}, Case{"", "it_IT.UTF-8", "de_DE", "roa/it"},
          Case{"", "", "en_US.UTF-8", "gmw/en-US"}, Case{"", "", "C", "gmw/en-US"},
          Case{"POSIX", "", "de_DE", "gmw/en-US"}, Case{"", "", "", "gmw/en-US"},
          Case{"xx_YY", "", "", "gmw/en-US"}, Case{"de_AT@euro", "", "", "gmw/de"},
          Case{"zh_CN.UTF-8", "", "", "sit/cmn-Latn-pinyin"}, Case{"nb_NO", "", "", "gmq/nb"},
          Case{"no_NO", "", "", "gmq/nb"}}) {
        const ScopedEnvironment all("LC_ALL", each.all);
        const ScopedEnvironment messages("LC_MESSAGES", each.messages);
        const ScopedEnvironment language("LANG", each.language);
        EXPECT_STREQ(each.voice, [[NSSpeechSynthesizer defaultVoice] UTF8String]);
        NSSpeechSynthesizer* const synthesizer = [[NSSpeechSynthesizer alloc] init];
        EXPECT_STREQ(each.voice, [[synthesizer voice] UTF8String]);
        [synthesizer release];
    }
}

TEST_F(Speech, AVoiceCanBeSetUnlessSpeaking) {
    Speaker speaker(@"gmw/de");
    EXPECT_TRUE([[speaker.synthesizer voice] isEqualToString:@"gmw/de"]);
    [speaker.synthesizer setRate:300];
    [speaker.synthesizer setVolume:0.5F];
    EXPECT_FALSE([speaker.synthesizer setVoice:@"none"]);
    EXPECT_FALSE([speaker.synthesizer setVoice:@""]);
    EXPECT_EQ(300.0F, [speaker.synthesizer rate]);
    ASSERT_TRUE(speaker.say(manyWords(50000), path("a.wav")));
    EXPECT_FALSE([speaker.synthesizer setVoice:@"roa/fr"]);
    [speaker.synthesizer stopSpeaking];
    EXPECT_TRUE([speaker.synthesizer setVoice:@"roa/fr"]);
    EXPECT_TRUE([[speaker.synthesizer voice] isEqualToString:@"roa/fr"]);
    EXPECT_EQ(1.0F, [speaker.synthesizer volume]);
    EXPECT_NE(300.0F, [speaker.synthesizer rate]);
    EXPECT_TRUE([speaker.synthesizer setVoice:nil]);
    EXPECT_TRUE([[speaker.synthesizer voice] isEqualToString:[NSSpeechSynthesizer defaultVoice]]);
}

} // namespace
