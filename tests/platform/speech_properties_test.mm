// The synthesizer's properties by their keys.

#include "tests/platform/speech_listener.h"
#include "tests/support/pulse_server.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace zqm::platform::test;
using zqm::support::SoundFile;

// As the documentation names them, to be independent of the constants.
constexpr NSInteger kUnknownProperty = -231;
constexpr NSInteger kNotReady = -242;
constexpr NSInteger kVoiceNotFound = -244;
constexpr NSInteger kBadValue = -245;

NSString* key(const char* name) {
    return [NSString stringWithUTF8String:name];
}

NSNumber* number(double value) {
    return [NSNumber numberWithDouble:value];
}

NSDictionary* pair(NSString* firstKey, id first, NSString* secondKey, id second) {
    return [NSDictionary dictionaryWithObjectsAndKeys:first, firstKey, second, secondKey, nil];
}

NSDictionary* delimiters(id prefix, id suffix) {
    return pair(NSSpeechCommandPrefix, prefix, NSSpeechCommandSuffix, suffix);
}

NSDictionary* voiceDictionary(id identifier) {
    return [NSDictionary dictionaryWithObject:identifier forKey:NSVoiceIdentifier];
}

std::string longText() {
    std::string text;
    for (int count = 0; count < 500; ++count) {
        text += "Word after word goes by. ";
    }
    return text;
}

std::string descriptionOf(id object) {
    return object != nil ? [[object description] UTF8String] : "nil";
}

class SpeechProperties : public testing::Test {
protected:
    id read(NSString* property) const {
        NSError* error = nil;
        id const value = [speaker_.synthesizer objectForProperty:property error:&error];
        EXPECT_EQ(nil, error) << descriptionOf(error);
        return value;
    }

    double readNumber(NSString* property) const { return [read(property) doubleValue]; }

    bool write(id value, NSString* property) const {
        NSError* error = nil;
        const BOOL done = [speaker_.synthesizer setObject:value forProperty:property error:&error];
        EXPECT_EQ(done == YES, error == nil) << descriptionOf(error);
        return done == YES;
    }

    void expectRefusal(id value, NSString* property, NSInteger code, const std::string& words) const {
        NSError* error = nil;
        EXPECT_FALSE([speaker_.synthesizer setObject:value forProperty:property error:&error]);
        expectError(error, code, words, property);
        EXPECT_FALSE([speaker_.synthesizer setObject:value forProperty:property error:nullptr]);
    }

    void expectUnreadable(NSString* property, const std::string& words) const {
        NSError* error = nil;
        EXPECT_EQ(nil, [speaker_.synthesizer objectForProperty:property error:&error]);
        expectError(error, kUnknownProperty, words, property);
        EXPECT_EQ(nil, [speaker_.synthesizer objectForProperty:property error:nullptr]);
    }

    static void expectError(NSError* error, NSInteger code, const std::string& words, NSString* property) {
        ASSERT_NE(nil, error) << descriptionOf(property);
        EXPECT_EQ(code, [error code]) << descriptionOf(property);
        EXPECT_TRUE([[error domain] isEqualToString:NSOSStatusErrorDomain]);
        EXPECT_EQ(words, [[error localizedDescription] UTF8String]);
    }

    std::string path(const char* name) const { return (folder_ / name).string(); }

    zqm::support::TemporaryFolder folder_;
    Speaker speaker_{@"gmw/en"};
};

TEST_F(SpeechProperties, HaveTheirValuesInTheBeginning) {
    EXPECT_TRUE([read(key("inpt")) isEqual:@"TEXT"]);
    EXPECT_TRUE([read(key("char")) isEqual:@"NORM"]);
    EXPECT_TRUE([read(key("nmbr")) isEqual:@"NORM"]);
    EXPECT_EQ([speaker_.synthesizer rate], readNumber(key("rate")));
    EXPECT_EQ(1, readNumber(key("volm")));
    EXPECT_EQ(0, readNumber(key("sync")));
    for (const char* const name : {"rate", "pbas", "pmod", "volm", "sync"}) {
        EXPECT_TRUE([read(key(name)) isKindOfClass:[NSNumber class]]) << name;
    }
}

TEST_F(SpeechProperties, PitchIsTheVoicesOwnInTheBeginning) {
    const double base = readNumber(NSSpeechPitchBaseProperty);
    const double modulation = readNumber(NSSpeechPitchModProperty);
    EXPECT_GE(base, 1);
    EXPECT_LE(base, 127);
    EXPECT_GT(modulation, 0);
    EXPECT_LE(modulation, 127);
}

TEST_F(SpeechProperties, KeepWhatIsSet) {
    struct Case {
        const char* property;
        std::vector<id> values;
    };
    for (const Case& each : std::vector<Case>{
             {"inpt", {@"PHON", @"TEXT"}},
             {"char", {@"LTRL", @"NORM"}},
             {"nmbr", {@"LTRL", @"NORM"}},
             {"rate", {number(1), number(320.25), [NSNumber numberWithInt:200]}},
             {"pbas", {number(1), number(45.5), number(127)}},
             {"pmod", {number(0), number(12.5), number(127)}},
             {"volm", {number(0), number(0.1), number(1)}},
         }) {
        for (id const value : each.values) {
            EXPECT_TRUE(write(value, key(each.property))) << each.property << " " << descriptionOf(value);
            EXPECT_TRUE([read(key(each.property)) isEqual:value])
                << each.property << " " << descriptionOf(value) << " "
                << descriptionOf(read(key(each.property)));
        }
    }
}

TEST_F(SpeechProperties, AreThoseThatTheMethodsHave) {
    [speaker_.synthesizer setRate:222.5F];
    [speaker_.synthesizer setVolume:0.25F];
    EXPECT_EQ(222.5, readNumber(NSSpeechRateProperty));
    EXPECT_EQ(0.25, readNumber(NSSpeechVolumeProperty));
    EXPECT_TRUE(write(number(333.5), NSSpeechRateProperty));
    EXPECT_TRUE(write(number(0.1), NSSpeechVolumeProperty));
    EXPECT_EQ(333.5F, [speaker_.synthesizer rate]);
    EXPECT_EQ(0.1F, [speaker_.synthesizer volume]);
}

TEST_F(SpeechProperties, RefuseWrongValuesAndKeepTheirs) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const std::vector<id> wrongNumbers{nil,
                                       @"1",
                                       [NSArray array],
                                       [NSNull null],
                                       number(nan),
                                       number(infinity),
                                       number(-1),
                                       [NSDictionary dictionary]};
    const std::vector<id> wrongModes{nil,     @"",       @"text",
                                     @"XXXX", number(1), [NSArray arrayWithObject:@"TEXT"]};
    struct Case {
        const char* property;
        const char* words;
        std::vector<id> common;
        std::vector<id> values;
    };
    for (const Case& each : std::vector<Case>{
             {"inpt",
              "The speech property \"inpt\" takes \"TEXT\" or \"PHON\".",
              wrongModes,
              {@"TUNE", @"NORM", @"LTRL"}},
             {"char",
              "The speech property \"char\" takes \"NORM\" or \"LTRL\".",
              wrongModes,
              {@"TEXT", @"PHON"}},
             {"nmbr",
              "The speech property \"nmbr\" takes \"NORM\" or \"LTRL\".",
              wrongModes,
              {@"TEXT", @"PHON"}},
             {"rate",
              "The speech property \"rate\" takes a number of words a minute.",
              wrongNumbers,
              {number(0)}},
             {"pbas",
              "The speech property \"pbas\" takes a number from 1 to 127.",
              wrongNumbers,
              {number(0), number(127.5)}},
             {"pmod",
              "The speech property \"pmod\" takes a number from 0 to 127.",
              wrongNumbers,
              {number(127.5)}},
             {"volm",
              "The speech property \"volm\" takes a number from 0 to 1.",
              wrongNumbers,
              {number(1.5)}},
         }) {
        id const before = read(key(each.property));
        for (const auto& values : {each.common, each.values}) {
            for (id const value : values) {
                SCOPED_TRACE(descriptionOf(value));
                expectRefusal(value, key(each.property), kBadValue, each.words);
                EXPECT_TRUE([read(key(each.property)) isEqual:before]);
            }
        }
    }
}

TEST_F(SpeechProperties, SomeCanOnlyBeRead) {
    for (const char* const name : {"stat", "erro", "vers", "sync", "phsy"}) {
        EXPECT_NE(nil, read(key(name))) << name;
        for (id const value : {id(number(1)), id(@"x"), id(nil)}) {
            expectRefusal(value, key(name), kUnknownProperty,
                          std::string("The speech property \"") + name + "\" can only be read.");
        }
    }
}

TEST_F(SpeechProperties, SomeCanOnlyBeSet) {
    for (const char* const name : {"cvox", "dlim", "rset", "opaf"}) {
        expectUnreadable(key(name), std::string("The speech property \"") + name + "\" can only be set.");
    }
}

TEST_F(SpeechProperties, ThereAreNoOthers) {
    for (const char* const name : {"", "none", "RATE", "rate ", "NSSpeechRateProperty", "soun", "\xC3\xA9"}) {
        const std::string words = std::string("There is no speech property \"") + name + "\".";
        expectUnreadable(key(name), words);
        expectRefusal(number(1), key(name), kUnknownProperty, words);
    }
    expectUnreadable(nil, "No speech property is named.");
    expectRefusal(number(1), nil, kUnknownProperty, "No speech property is named.");
}

TEST_F(SpeechProperties, LeaveTheErrorAloneWhenAllIsWell) {
    NSError* const before = [NSError errorWithDomain:@"before" code:1 userInfo:nil];
    NSError* error = before;
    EXPECT_NE(nil, [speaker_.synthesizer objectForProperty:NSSpeechRateProperty error:&error]);
    EXPECT_EQ(before, error);
    EXPECT_TRUE([speaker_.synthesizer setObject:number(200) forProperty:NSSpeechRateProperty error:&error]);
    EXPECT_EQ(before, error);
}

TEST_F(SpeechProperties, TellWhatTheSynthesizerIs) {
    NSDictionary* const info = read(NSSpeechSynthesizerInfoProperty);
    EXPECT_EQ(2U, [info count]);
    EXPECT_TRUE([[info objectForKey:NSSpeechSynthesizerInfoIdentifier] isEqual:@"espeak-ng"])
        << descriptionOf(info);
    NSString* const version = [info objectForKey:NSSpeechSynthesizerInfoVersion];
    EXPECT_TRUE([version hasPrefix:@"1."]) << descriptionOf(version);
}

TEST_F(SpeechProperties, ListThePhonemes) {
    const std::vector<std::pair<const char*, const char*>> expected{
        {"%", "silence"}, {"@", "breath"}, {"AE", "bat"}, {"EY", "bait"}, {"AO", "caught"}, {"AX", "about"},
        {"IY", "beet"},   {"EH", "bet"},   {"IH", "bit"}, {"AY", "bite"}, {"IX", "roses"},  {"AA", "father"},
        {"UW", "boot"},   {"UH", "book"},  {"UX", "bud"}, {"OW", "boat"}, {"AW", "bout"},   {"OY", "boy"},
        {"b", "bin"},     {"C", "chin"},   {"d", "din"},  {"D", "them"},  {"f", "fin"},     {"g", "gain"},
        {"h", "hat"},     {"J", "jump"},   {"k", "kin"},  {"l", "limb"},  {"m", "mat"},     {"n", "nap"},
        {"N", "tang"},    {"p", "pin"},    {"r", "ran"},  {"s", "sin"},   {"S", "shin"},    {"t", "tin"},
        {"T", "thin"},    {"v", "van"},    {"w", "wet"},  {"y", "yet"},   {"z", "zoo"},     {"Z", "measure"}};
    NSArray* const symbols = read(NSSpeechPhonemeSymbolsProperty);
    ASSERT_EQ(expected.size(), [symbols count]);
    for (std::size_t index = 0; index < expected.size(); ++index) {
        NSDictionary* const symbol = [symbols objectAtIndex:index];
        EXPECT_EQ(5U, [symbol count]);
        EXPECT_EQ(index, [[symbol objectForKey:NSSpeechPhonemeInfoOpcode] unsignedIntegerValue]);
        EXPECT_STREQ(expected[index].first, [[symbol objectForKey:NSSpeechPhonemeInfoSymbol] UTF8String]);
        NSString* const example = [symbol objectForKey:NSSpeechPhonemeInfoExample];
        EXPECT_STREQ(expected[index].second, [example UTF8String]);
        const NSInteger start = [[symbol objectForKey:NSSpeechPhonemeInfoHiliteStart] integerValue];
        const NSInteger end = [[symbol objectForKey:NSSpeechPhonemeInfoHiliteEnd] integerValue];
        EXPECT_TRUE(0 <= start && start < end && end <= static_cast<NSInteger>([example length])) << index;
    }
}

TEST_F(SpeechProperties, TheVoiceCanBeSetByItsDictionary) {
    EXPECT_TRUE(write(voiceDictionary(@"gmw/de"), NSSpeechCurrentVoiceProperty));
    EXPECT_TRUE([[speaker_.synthesizer voice] isEqual:@"gmw/de"]);
    EXPECT_TRUE(write([NSSpeechSynthesizer attributesForVoice:@"roa/fr"], NSSpeechCurrentVoiceProperty));
    EXPECT_TRUE([[speaker_.synthesizer voice] isEqual:@"roa/fr"]);
    expectRefusal(voiceDictionary(@"none"), NSSpeechCurrentVoiceProperty, kVoiceNotFound,
                  "There is no voice \"none\".");
    for (id const value : {id(nil), id(@"gmw/de"), id([NSDictionary dictionary]),
                           id(voiceDictionary(number(1))), id([NSNull null])}) {
        expectRefusal(value, NSSpeechCurrentVoiceProperty, kBadValue,
                      "The speech property \"cvox\" takes a dictionary with the identifier of a voice.");
    }
    EXPECT_TRUE([[speaker_.synthesizer voice] isEqual:@"roa/fr"]);
}

TEST_F(SpeechProperties, ANewVoiceSpeaksInItsOwnManner) {
    const double rate = readNumber(NSSpeechRateProperty);
    const double base = readNumber(NSSpeechPitchBaseProperty);
    const double modulation = readNumber(NSSpeechPitchModProperty);
    EXPECT_TRUE(write(number(rate + 10), NSSpeechRateProperty));
    EXPECT_TRUE(write(number(base / 2 + 1), NSSpeechPitchBaseProperty));
    EXPECT_TRUE(write(number(modulation / 2), NSSpeechPitchModProperty));
    EXPECT_TRUE(write(number(0.5), NSSpeechVolumeProperty));
    EXPECT_TRUE(write(@"LTRL", NSSpeechNumberModeProperty));
    ASSERT_TRUE([speaker_.synthesizer setVoice:@"gmw/en"]);
    EXPECT_EQ(rate, readNumber(NSSpeechRateProperty));
    EXPECT_EQ(base, readNumber(NSSpeechPitchBaseProperty));
    EXPECT_EQ(modulation, readNumber(NSSpeechPitchModProperty));
    EXPECT_EQ(1, readNumber(NSSpeechVolumeProperty));
    EXPECT_TRUE([read(NSSpeechNumberModeProperty) isEqual:@"LTRL"]);
}

TEST_F(SpeechProperties, AResetTakesBackWhatWasSet) {
    const std::vector<const char*> all{"inpt", "char", "nmbr", "rate", "pbas", "pmod", "volm"};
    std::vector<id> before;
    before.reserve(all.size());
    for (const char* const name : all) {
        before.push_back([[read(key(name)) retain] autorelease]);
    }
    const std::vector<id> others{@"PHON", @"LTRL", @"LTRL", number(300), number(70), number(3), number(0.25)};
    for (id const nothing : {id(nil), id([NSNull null])}) {
        for (std::size_t index = 0; index < all.size(); ++index) {
            ASSERT_TRUE(write(others[index], key(all[index])));
        }
        EXPECT_TRUE(write(nothing, NSSpeechResetProperty));
        for (std::size_t index = 0; index < all.size(); ++index) {
            EXPECT_TRUE([read(key(all[index])) isEqual:before[index]]) << all[index];
        }
    }
    expectRefusal(number(0), NSSpeechResetProperty, kBadValue, "The speech property \"rset\" takes nothing.");
}

TEST_F(SpeechProperties, TheOutputIsWhereATextIsSpokenTo) {
    ASSERT_TRUE(write(fileUrl(path("a.wav")), NSSpeechOutputToFileURLProperty));
    ASSERT_TRUE([speaker_.synthesizer startSpeakingString:@"Hello world"]);
    ASSERT_TRUE(speaker_.runToEnd(1));
    const double seconds = SoundFile(path("a.wav")).seconds();
    EXPECT_GT(seconds, 0.5);
    ASSERT_TRUE([speaker_.synthesizer startSpeakingString:@"Hello"]);
    ASSERT_TRUE(speaker_.runToEnd(2));
    EXPECT_LT(SoundFile(path("a.wav")).seconds(), seconds) << "it stays so for the next text";
    ASSERT_TRUE(speaker_.say("Hello", path("b.wav")) && speaker_.runToEnd(3));
    EXPECT_TRUE(std::filesystem::exists(path("b.wav"))) << "a start may say otherwise";

    const zqm::support::ScopedPulseServer none("unix:" + path("none"));
    for (id const nothing : {id(nil), id([NSNull null])}) {
        Speaker aloud; // its engine finds no sound server
        for (id const value : {id(fileUrl(path("c.wav"))), nothing}) {
            ASSERT_TRUE([aloud.synthesizer setObject:value
                                         forProperty:NSSpeechOutputToFileURLProperty
                                               error:nullptr]);
        }
        EXPECT_FALSE([aloud.synthesizer startSpeakingString:@"Hello"]);
    }
    EXPECT_FALSE(std::filesystem::exists(path("c.wav")));
}

TEST_F(SpeechProperties, TheOutputIsAFileHere) {
    for (id const value :
         {id(@"/tmp/a.wav"), id(number(1)), id([NSURL URLWithString:@"http://localhost/a.wav"]),
          id([NSURL URLWithString:@"file://elsewhere/a.wav"])}) {
        expectRefusal(value, NSSpeechOutputToFileURLProperty, kBadValue,
                      "The speech property \"opaf\" takes the URL of a file here, or nothing.");
    }
    EXPECT_TRUE(write(fileUrl("/none/a.wav"), NSSpeechOutputToFileURLProperty));
    EXPECT_FALSE([speaker_.synthesizer startSpeakingString:@"Hello"])
        << "that it can't be written shows here";
}

TEST_F(SpeechProperties, DelimitersAreTwoOrNone) {
    for (id const value : {id(delimiters(@"<", @">")), id(delimiters(@"<<", @">>")), id(delimiters(@"", @"")),
                           id(delimiters(@"é", @"你好")), id(delimiters(@"[[", @"]]"))}) {
        EXPECT_TRUE(write(value, NSSpeechCommandDelimiterProperty)) << descriptionOf(value);
    }
    for (id const value :
         {id(nil), id(@"[["), id([NSDictionary dictionary]),
          id([NSDictionary dictionaryWithObject:@"[[" forKey:NSSpeechCommandPrefix]),
          id(delimiters(@"[[", @"")), id(delimiters(@"", @"]]")), id(delimiters(@"[[[", @"]]")),
          id(delimiters(@"[[", number(1))), id(delimiters(@"[[", @"]]]"))}) {
        expectRefusal(
            value, NSSpeechCommandDelimiterProperty, kBadValue,
            "The speech property \"dlim\" takes a dictionary with a prefix and a suffix of one or two "
            "characters each, or both empty.");
    }
}

TEST_F(SpeechProperties, ErrorsAreThoseSinceTheLastRead) {
    const auto errors = [&] {
        NSDictionary* const all = read(NSSpeechErrorsProperty);
        EXPECT_EQ(5U, [all count]);
        std::vector<long long> values;
        for (NSString* const name :
             {NSSpeechErrorCount, NSSpeechErrorOldestCode, NSSpeechErrorOldestCharacterOffset,
              NSSpeechErrorNewestCode, NSSpeechErrorNewestCharacterOffset}) {
            EXPECT_TRUE([[all objectForKey:name] isKindOfClass:[NSNumber class]]);
            values.push_back([[all objectForKey:name] longLongValue]);
        }
        return values;
    };
    const std::vector<long long> none{0, 0, 0, 0, 0};
    EXPECT_EQ(none, errors());
    ASSERT_TRUE(speaker_.say("One [[volm 7]] two [[none 1]] three [[rate]] four.", path("a.wav")));
    ASSERT_TRUE(speaker_.runToEnd(1));
    const std::vector<long long> three = errors();
    EXPECT_EQ(3, three[0]);
    EXPECT_EQ(-245, three[1]);
    EXPECT_TRUE(three[2] >= 4 && three[2] < 14) << three[2];
    EXPECT_EQ(-252, three[3]);
    EXPECT_TRUE(three[4] >= 38 && three[4] < 46) << three[4];
    EXPECT_EQ(none, errors());
    ASSERT_TRUE(speaker_.say("One [[volm 7]] two.", path("a.wav")) && speaker_.runToEnd(2));
    EXPECT_EQ(1, errors()[0]);
}

TEST_F(SpeechProperties, TheRecentSyncIsTheLastOne) {
    ASSERT_TRUE(speaker_.say("One [[sync 7]] two [[sync 'ABCD']] three [[sync 0x10]] four.", path("a.wav")));
    ASSERT_TRUE(speaker_.runToEnd(1));
    EXPECT_EQ(16, readNumber(NSSpeechRecentSyncProperty));
    ASSERT_TRUE(speaker_.say("One [[sync 0xFFFFFFFF]] two.", path("a.wav")) && speaker_.runToEnd(2));
    EXPECT_EQ(4294967295.0, readNumber(NSSpeechRecentSyncProperty));
}

TEST_F(SpeechProperties, DelimitersSayWhatACommandIs) {
    struct Case {
        NSString* prefix;
        NSString* suffix;
        std::string text;
        std::vector<std::size_t> words; // where they begin
    };
    std::size_t spoken = 0;
    for (const Case& each : std::vector<Case>{
             {@"[[", @"]]", "One [[rate 200]] two", {0, 17}},
             {@"<", @">", "One <rate 200> two", {0, 15}},
             {@"<", @">", "One [[rate 200]] two", {0, 6, 11, 17}},
             {@"", @"", "One [[rate 200]] two", {0, 6, 11, 17}},
             {@"é", @"你", "One érate 200你 two", {0, 15}},
         }) {
        speaker_.heard.words.clear();
        ASSERT_TRUE(write(delimiters(each.prefix, each.suffix), NSSpeechCommandDelimiterProperty));
        EXPECT_TRUE(write(nil, NSSpeechResetProperty)) << "which leaves them alone";
        ASSERT_TRUE(speaker_.say(each.text, path("a.wav")) && speaker_.runToEnd(++spoken));
        std::vector<std::size_t> begins;
        for (const HeardWord& word : speaker_.heard.words) {
            begins.push_back(word.position);
        }
        EXPECT_EQ(each.words, begins) << each.text;
    }
}

class PropertiesWhileSpeaking : public SpeechProperties {
protected:
    bool begin() {
        return [speaker_.synthesizer startSpeakingString:stringOf(longText())] == YES &&
               runUntil([&] { return speaker_.heard.words.size() >= 3; });
    }

    long long status(NSSpeechStatusKey name) {
        return [[read(NSSpeechStatusProperty) objectForKey:name] longLongValue];
    }

    zqm::support::PulseServer server_;
    zqm::support::ScopedPulseServer use_{server_};
};

TEST_F(PropertiesWhileSpeaking, TheStatusFollowsTheSpeech) {
    EXPECT_EQ(4U, [read(NSSpeechStatusProperty) count]);
    EXPECT_EQ(0, status(NSSpeechStatusOutputBusy));
    EXPECT_EQ(0, status(NSSpeechStatusOutputPaused));
    EXPECT_EQ(0, status(NSSpeechStatusNumberOfCharactersLeft));
    EXPECT_EQ(0, status(NSSpeechStatusPhonemeCode));
    ASSERT_TRUE(begin());
    EXPECT_EQ(1, status(NSSpeechStatusOutputBusy));
    EXPECT_EQ(0, status(NSSpeechStatusOutputPaused));
    const auto left = status(NSSpeechStatusNumberOfCharactersLeft);
    EXPECT_GT(left, 0);
    EXPECT_LE(left, static_cast<long long>(longText().size()) - 15) << "three words are heard";
    [speaker_.synthesizer stopSpeaking];
    EXPECT_EQ(0, status(NSSpeechStatusOutputBusy));
    EXPECT_EQ(0, status(NSSpeechStatusNumberOfCharactersLeft));
}

TEST_F(PropertiesWhileSpeaking, TheStatusTellsAPause) {
    ASSERT_TRUE(begin());
    [speaker_.synthesizer pauseSpeakingAtBoundary:NSSpeechWordBoundary];
    ASSERT_TRUE(runUntil([&] { return status(NSSpeechStatusOutputPaused) == 1; }));
    EXPECT_EQ(0, status(NSSpeechStatusOutputBusy));
    EXPECT_TRUE([speaker_.synthesizer isSpeaking]);
    EXPECT_GT(status(NSSpeechStatusNumberOfCharactersLeft), 0);
    [speaker_.synthesizer continueSpeaking];
    EXPECT_EQ(0, status(NSSpeechStatusOutputPaused));
    EXPECT_EQ(1, status(NSSpeechStatusOutputBusy));
}

TEST_F(PropertiesWhileSpeaking, TheVoiceStays) {
    ASSERT_TRUE(begin());
    expectRefusal(voiceDictionary(@"gmw/de"), NSSpeechCurrentVoiceProperty, kNotReady,
                  "The voice can't change while a text is being spoken.");
    [speaker_.synthesizer stopSpeaking];
    EXPECT_TRUE(write(voiceDictionary(@"gmw/de"), NSSpeechCurrentVoiceProperty));
}

} // namespace
