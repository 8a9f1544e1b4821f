// What the commands in a text do, and what the delegate hears of them.

#include "tests/platform/speech_listener.h"
#include "tests/support/fundamental_frequency.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

// What was told in its order: words as they stand in the text, messages, and mistakes by their places.
struct Told {
    NSString* text = nil;
    std::vector<std::string> order;
};

} // namespace

@interface ZQMCommandListener : ZQMSpeechListener {
@private
    void* _told; // a Told
}
- (instancetype)initWithHeard:(void*)heard told:(void*)told;
@end

@implementation ZQMCommandListener

- (instancetype)initWithHeard:(void*)heard told:(void*)told {
    self = [super initWithHeard:heard];
    if (self != nil) {
        _told = told;
    }
    return self;
}

- (void)tell:(NSString*)entry {
    static_cast<Told*>(_told)->order.emplace_back([entry UTF8String]);
}

- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender
            willSpeakWord:(NSRange)range
                 ofString:(NSString*)string {
    [super speechSynthesizer:sender willSpeakWord:range ofString:string];
    [self tell:[string substringWithRange:range]];
}

- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender
    didEncounterErrorAtIndex:(NSUInteger)index
                    ofString:(NSString*)string
                     message:(NSString*)message {
    EXPECT_NE(nil, sender);
    EXPECT_TRUE([string isEqualToString:static_cast<Told*>(_told)->text]);
    [self tell:[NSString stringWithFormat:@"%lu: %@", static_cast<unsigned long>(index), message]];
}

- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender didEncounterSyncMessage:(NSString*)message {
    EXPECT_NE(nil, sender);
    [self tell:[@"sync " stringByAppendingString:message]];
}

@end

namespace {

using namespace zqm::platform::test;
using zqm::support::Samples;
using zqm::support::SoundFile;

constexpr const char* kVoiced =
    "My mother will remain in the warm room all morning, and we may know more in a minute.";

class SpeechCommands : public testing::Test {
public:
    SpeechCommands() : listener_([[ZQMCommandListener alloc] initWithHeard:&speaker_.heard told:&told_]) {
        [speaker_.synthesizer setDelegate:listener_];
    }
    ~SpeechCommands() override {
        speaker_.release();
        [listener_ release];
    }
    SpeechCommands(const SpeechCommands&) = delete;
    SpeechCommands& operator=(const SpeechCommands&) = delete;

    SoundFile say(const std::string& text) {
        told_ = {stringOf(text), {}};
        const std::string path = (folder_ / "a.wav").string();
        EXPECT_TRUE(speaker_.say(text, path) && speaker_.runToEnd(++spoken_));
        EXPECT_TRUE(speaker_.heard.finished.back());
        return SoundFile(path);
    }

    std::vector<std::string> toldOf(const std::string& text) {
        say(text);
        return told_.order;
    }

    zqm::support::TemporaryFolder folder_;
    Speaker speaker_{@"gmw/en-US"};
    Told told_;
    ZQMCommandListener* listener_;
    std::size_t spoken_ = 0;
};

// ---- the sound

double length(const Samples& samples, int /*rate*/) {
    return static_cast<double>(samples.size());
}

double loudness(const Samples& samples, int /*rate*/) {
    return zqm::support::rms(samples);
}

double frequency(const Samples& samples, int rate) {
    return zqm::support::medianFrequency(samples, rate);
}

double spread(const Samples& samples, int rate) {
    return zqm::support::frequencySpread(samples, rate);
}

struct Effect {
    std::string command;
    std::string text; // spoken without the command, and with it
    std::function<double(const Samples&, int)> measure;
    double least; // as a part of what it is without the command
    double greatest;
};

void PrintTo(const Effect& example, std::ostream* stream) {
    *stream << example.command << example.text;
}

class HeardCommands : public SpeechCommands, public testing::WithParamInterface<Effect> {};

TEST_P(HeardCommands, ChangeTheSound) {
    constexpr double kGap = 2.5;
    const Effect& effect = GetParam();
    const SoundFile sound = say(effect.text + "[[slnc 3000]]" + effect.command + effect.text);
    const std::vector<Samples> parts = zqm::support::partsBetweenSilences(sound.samples, sound.rate, kGap);
    ASSERT_EQ(2U, parts.size());
    const double change = effect.measure(parts[1], sound.rate) / effect.measure(parts[0], sound.rate);
    EXPECT_GE(change, effect.least);
    EXPECT_LE(change, effect.greatest);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, HeardCommands,
    testing::Values(
        Effect{"[[rate 350]]", kVoiced, length, 0.4, 0.6}, Effect{"[[rate -75]]", kVoiced, length, 1.5, 2},
        Effect{"[[volm 0.25]]", kVoiced, loudness, 0.24, 0.26},
        Effect{"[[volm -0.5]]", kVoiced, loudness, 0.49, 0.51},
        Effect{"[[pbas 35; pbas 60]]", kVoiced, frequency, 1.5, 4},
        Effect{"[[pbas +14.4]]", kVoiced, frequency, 1.8, 2.2}, Effect{"[[pmod 0]]", kVoiced, spread, 0, 0.3},
        Effect{"[[pmod 127]]", kVoiced, spread, 1.5, 10}, Effect{"[[emph +]]", "Many.", loudness, 1.2, 3},
        Effect{"[[emph +]]", "Many.", length, 1.1, 2}, Effect{"[[emph -]]", "Many.", loudness, 0.2, 0.8},
        Effect{"[[emph -]]", "Many.", length, 0.4, 0.9}, Effect{"[[char LTRL]]", "Strength.", length, 2, 9},
        Effect{"[[nmbr LTRL]]", "1234567.", length, 0.2, 0.8},
        Effect{"[[rate 350; volm 0.5; pmod 0; rset 0]]", kVoiced, length, 0.97, 1.03},
        Effect{"[[rate 350; volm 0.5; pmod 0; rset 0]]", kVoiced, loudness, 0.97, 1.03},
        Effect{"[[rate 350; volm 0.5; pmod 0; rset 0]]", kVoiced, spread, 0.9, 1.1},
        Effect{"[[cmnt rate 350]][[ctxt WORD]][[vers 1]]", kVoiced, length, 0.97, 1.03}));

TEST_F(SpeechCommands, SilenceLastsAsLongAsItSays) {
    const double without = say("One [[slnc 0]]two").seconds();
    for (const int milliseconds : {50, 500, 1234}) {
        const double with = say("One [[slnc " + std::to_string(milliseconds) + "]]two").seconds();
        EXPECT_NEAR(with - without, milliseconds / 1000.0, 0.01) << milliseconds;
    }
}

// ---- what the delegate hears

struct Story {
    std::string text;
    std::vector<std::string> told;
};

void PrintTo(const Story& example, std::ostream* stream) {
    *stream << example.text;
}

class ToldCommands : public SpeechCommands, public testing::WithParamInterface<Story> {};

TEST_P(ToldCommands, ComeInTheirOrder) {
    EXPECT_EQ(GetParam().told, toldOf(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(SyncMessages, ToldCommands,
                         testing::Values(Story{"One [[sync 0x41]]two", {"One", "sync A", "two"}},
                                         Story{"One [[sync 0x417F]]two", {"One", "sync A\x7F", "two"}},
                                         Story{"One [[sync 0x41C4]]two", {"One", "sync A\u0192", "two"}},
                                         Story{"One [[sync 65]]two", {"One", "sync A", "two"}},
                                         Story{"[[sync note]]One two[[sync END!]]",
                                               {"sync note", "One", "two", "sync END!"}},
                                         Story{"One [[sync 0x41424344]]two", {"One", "sync ABCD", "two"}},
                                         Story{"One. [[sync a__1; slnc 100; sync b__2]]Two",
                                               {"One", "sync a__1", "sync b__2", "Two"}}));

INSTANTIATE_TEST_SUITE_P(
    Mistakes, ToldCommands,
    testing::Values(
        Story{"One [[volm 2]]two",
              {"One", "11: \"volm\" takes a volume from 0 to 1, or + or - and a number, not \"2\".", "two"}},
        Story{"\U0001F600 One [[emph]]two",
              {"\U0001F600", "One", "9: \"emph\" lacks what it takes: + or -.", "two"}},
        Story{"One [[emph + +]]two", {"One", "13: \"emph\" takes only + or -, not also \"+\".", "two"}},
        Story{"One [[hurry; sync 16706]]two", {"One", "6: \"hurry\" is no command.", "sync AB", "two"}},
        Story{"One [[inpt TUNE]]two", {"One", "11: \"inpt\" with \"TUNE\" is not understood here.", "two"}},
        Story{"One [[two", {"One", "4: The commands behind \"[[\" have no end.", "two"}}));

INSTANTIATE_TEST_SUITE_P(
    Delimiters, ToldCommands,
    testing::Values(Story{"One [[dlim { }]]two {sync here}three", {"One", "two", "sync here", "three"}},
                    Story{"One [[dlim { }]]two [[sync here]]", {"One", "two", "sync", "here"}},
                    Story{std::string("One [[dlim \0\0]]two [[sync here]]", 31),
                          {"One", "two", "sync", "here"}}));

TEST_F(SpeechCommands, AreWordsWithoutDelimiters) {
    NSDictionary* const none = [NSDictionary
        dictionaryWithObjectsAndKeys:@"", NSSpeechCommandPrefix, @"", NSSpeechCommandSuffix, nil];
    ASSERT_TRUE([speaker_.synthesizer setObject:none
                                    forProperty:NSSpeechCommandDelimiterProperty
                                          error:nullptr]);
    EXPECT_EQ((std::vector<std::string>{"One", "sync", "here", "two"}), toldOf("One [[sync here]]two"));
}

} // namespace
