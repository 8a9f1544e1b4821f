// What a program hears that observes its synthesizers.

#include "tests/platform/observed_speaking.h"
#include "tests/platform/raised_exception.h"
#include "tests/platform/speech_fixture.h"
#include "tests/support/process_table.h"
#include "tests/support/pulse_server.h"
#include "tests/support/sound_file.h"

#import <AppKit/NSSpeechConstants.h>

#include <algorithm>
#include <csignal>

namespace {

using namespace zqm::platform::test;

class SpeechObserver : public Speech {
protected:
    static std::vector<HeardWord> wordsIn(const ObservedSpeaking& observed) {
        std::vector<HeardWord> words;
        for (const SpokenEvent& event : observed.of(ZQMSpeakingWord)) {
            words.push_back({event.position, event.length});
        }
        return words;
    }
};

TEST_F(SpeechObserver, HearsEverythingWithItsTimeThoughNoDelegateAsks) {
    ObservedSpeaking observed;
    Speaker speaker;
    [speaker.synthesizer setDelegate:nil];
    ASSERT_TRUE(speaker.say("One [[sync 7]]two[[slnc 800]] [[rate much]]three.", path("a.wav")));
    ASSERT_TRUE(observed.runToEnd());
    EXPECT_EQ((std::vector<HeardWord>{{0, 3}, {14, 3}, {43, 5}}), wordsIn(observed));
    const auto words = observed.of(ZQMSpeakingWord);
    ASSERT_EQ(3U, words.size());
    EXPECT_EQ(0, words[0].time);
    EXPECT_LT(words[0].time, words[1].time);
    EXPECT_LT(words[1].time + 0.8, words[2].time);

    const auto syncs = observed.of(ZQMSpeakingSync);
    ASSERT_EQ(1U, syncs.size());
    EXPECT_EQ(7U, syncs[0].message);
    EXPECT_EQ(words[1].time, syncs[0].time);

    const auto problems = observed.of(ZQMSpeakingProblem);
    ASSERT_EQ(1U, problems.size());
    EXPECT_EQ(words[2].time, problems[0].time);
    EXPECT_EQ(37U, problems[0].position);
    EXPECT_NE("", problems[0].text);

    const zqm::support::SoundFile sound(path("a.wav"));
    EXPECT_DOUBLE_EQ(sound.seconds(), observed.events.back().time);
    EXPECT_TRUE(observed.events.back().completed);
    EXPECT_EQ(ZQMSpeakingFinished, observed.events.back().kind);
    EXPECT_EQ(1U, observed.of(ZQMSpeakingFinished).size());
    EXPECT_TRUE(std::ranges::is_sorted(observed.events, {}, &SpokenEvent::time));
}

TEST_F(SpeechObserver, HearsThePhonemesByTheSymbolsThatTheSynthesizerTells) {
    ObservedSpeaking observed;
    Speaker speaker;
    NSArray* const table = [speaker.synthesizer objectForProperty:NSSpeechPhonemeSymbolsProperty
                                                            error:nullptr];
    ASSERT_TRUE(speaker.say("dog", path("a.wav")));
    ASSERT_TRUE(observed.runToEnd());
    std::string symbols;
    double last = -1;
    for (const SpokenEvent& event : observed.of(ZQMSpeakingPhoneme)) {
        NSDictionary* const row = [table objectAtIndex:static_cast<NSUInteger>(event.opcode)];
        EXPECT_EQ(event.opcode, [[row objectForKey:NSSpeechPhonemeInfoOpcode] intValue]);
        EXPECT_STREQ([[row objectForKey:NSSpeechPhonemeInfoSymbol] UTF8String], event.symbol.c_str());
        EXPECT_TRUE(event.time > last || event.opcode != 0) << event.symbol;
        last = event.time;
        symbols += event.symbol;
    }
    EXPECT_EQ("%dAOg%", symbols);
}

TEST_F(SpeechObserver, IsToldBeforeTheDelegate) {
    ObservedSpeaking observed;
    Speaker speaker;
    std::string order;
    observed.onEvent = [&](const SpokenEvent& event) {
        order += event.kind == ZQMSpeakingWord ? "W" : event.kind == ZQMSpeakingFinished ? "F" : "";
    };
    speaker.heard.onWord = [&](NSSpeechSynthesizer*) { order += 'w'; };
    speaker.heard.onFinish = [&](NSSpeechSynthesizer*) { order += 'f'; };
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ("WwWwFf", order);
    EXPECT_EQ(kHelloWorld, wordsIn(observed));
    EXPECT_EQ(kHelloWorld, speaker.heard.words);
}

TEST_F(SpeechObserver, HearsOfEverySynthesizer) {
    ObservedSpeaking observed;
    Speaker one;
    Speaker other;
    ASSERT_TRUE(one.say("Hello world", path("a.wav")));
    ASSERT_TRUE(other.say("Hello world", path("b.wav")));
    ASSERT_TRUE(observed.runToEnd(2));
    EXPECT_EQ(4U, wordsIn(observed).size());
}

TEST_F(SpeechObserver, MayStopWhatTheDelegateWasToHearOf) {
    ObservedSpeaking observed;
    Speaker speaker;
    observed.onEvent = [&](const SpokenEvent& event) {
        if (event.kind == ZQMSpeakingWord) {
            [speaker.synthesizer stopSpeaking];
        }
    };
    ASSERT_TRUE(speaker.say(manyWords(50000), path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd());
    runOut();
    EXPECT_EQ(std::vector<char>{'f'}, speaker.heard.order);
    EXPECT_EQ(std::vector<bool>{false}, speaker.heard.finished);
    EXPECT_EQ(1U, wordsIn(observed).size());
    const auto ends = observed.of(ZQMSpeakingFinished);
    ASSERT_EQ(1U, ends.size());
    EXPECT_FALSE(ends[0].completed);
    EXPECT_DOUBLE_EQ(zqm::support::SoundFile(path("a.wav")).seconds(), ends[0].time);
}

TEST_F(SpeechObserver, MayStopAsTheEndIsTold) {
    ObservedSpeaking observed;
    Speaker speaker;
    observed.onEvent = [&](const SpokenEvent& event) {
        if (event.kind == ZQMSpeakingFinished) {
            [speaker.synthesizer stopSpeaking];
        }
    };
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd());
    runOut();
    EXPECT_EQ(1U, observed.of(ZQMSpeakingFinished).size());
    EXPECT_EQ(std::vector<bool>{true}, speaker.heard.finished);
}

TEST_F(SpeechObserver, MayStartAnother) {
    ObservedSpeaking observed;
    Speaker speaker;
    observed.onEvent = [&](const SpokenEvent& event) {
        if (event.kind == ZQMSpeakingWord && wordsIn(observed).size() == 1) {
            EXPECT_TRUE(speaker.say("Hello world", path("b.wav")));
        }
    };
    ASSERT_TRUE(speaker.say(manyWords(50000), path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd(2));
    EXPECT_EQ((std::vector<char>{'f', 'w', 'w', 'f'}), speaker.heard.order);
    EXPECT_EQ(3U, wordsIn(observed).size());
    EXPECT_EQ(2U, observed.of(ZQMSpeakingFinished).size());
}

TEST_F(SpeechObserver, MayDropTheSynthesizer) {
    ObservedSpeaking observed;
    Speaker speaker;
    observed.onEvent = [&](const SpokenEvent&) { speaker.release(); };
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    ASSERT_TRUE(runUntil([&] { return speaker.synthesizer == nil; }));
    runOut();
    EXPECT_EQ(1U, observed.events.size());
    EXPECT_TRUE(speaker.heard.order.empty());
}

TEST_F(SpeechObserver, AnExceptionOfItsTakesNothingFromTheDelegate) {
    ObservedSpeaking observed;
    Speaker speaker;
    observed.onEvent = [](const SpokenEvent& event) {
        if (event.kind == ZQMSpeakingWord) {
            [NSException raise:@"ZQMTestException" format:@"by the observer"];
        }
    };
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    for (int round = 0; round < 2; ++round) {
        EXPECT_NE(nil, raisedBy([&] { runUntil([] { return false; }); }));
    }
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ((std::vector<char>{'w', 'w', 'f'}), speaker.heard.order);
    EXPECT_EQ(kHelloWorld, wordsIn(observed));
}

TEST_F(SpeechObserver, ThatComesAndGoesOnTheWayHearsWhatIsDeliveredMeanwhile) {
    Speaker speaker;
    std::size_t count = 0;
    std::unique_ptr<ObservedSpeaking> observed;
    speaker.heard.onWord = [&](NSSpeechSynthesizer*) {
        if (speaker.heard.words.size() == 2) {
            observed = std::make_unique<ObservedSpeaking>();
        } else if (speaker.heard.words.size() == 4) {
            count = wordsIn(*observed).size();
            observed.reset();
        }
    };
    ASSERT_TRUE(speaker.say("One two three four five six", path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(6U, speaker.heard.words.size());
    EXPECT_EQ(2U, count);
}

TEST_F(SpeechObserver, OfAnEmptyTextHearsTheEnd) {
    ObservedSpeaking observed;
    Speaker speaker;
    ASSERT_TRUE([speaker.synthesizer startSpeakingString:@""]);
    ASSERT_TRUE(observed.runToEnd());
    ASSERT_EQ(1U, observed.events.size());
    EXPECT_EQ(0, observed.events[0].time);
    EXPECT_TRUE(observed.events[0].completed);
}

TEST_F(SpeechObserver, OfSoundThatIsStoppedHearsHowFarItWasTold) {
    const zqm::support::PulseServer server;
    const zqm::support::ScopedPulseServer use(server);
    ObservedSpeaking observed;
    Speaker speaker;
    observed.onEvent = [&](const SpokenEvent& event) {
        if (event.position > 0) {
            [speaker.synthesizer stopSpeaking];
        }
    };
    ASSERT_TRUE([speaker.synthesizer startSpeakingString:stringOf(manyWords(1000))]);
    ASSERT_TRUE(observed.runToEnd());
    EXPECT_FALSE(observed.events.back().completed);
    EXPECT_GT(observed.events.back().time, 0);
    EXPECT_GE(observed.events.back().time, observed.of(ZQMSpeakingWord).back().time);
}

TEST_F(SpeechObserver, OfAnEngineThatDiesHearsHowFarItWasTold) {
    ObservedSpeaking observed;
    Speaker speaker;
    const UnreadPipe pipe(path("a.ogg"));
    ASSERT_TRUE(speaker.say(manyWords(50000), path("a.ogg")));
    ASSERT_TRUE(pipe.fillsUp());
    ASSERT_TRUE(runUntil([&] { return wordsIn(observed).size() > 5; }));
    ::kill(zqm::support::childrenOfThisProcess().back(), SIGKILL);
    ASSERT_TRUE(observed.runToEnd());
    EXPECT_FALSE(observed.events.back().completed);
    EXPECT_EQ((observed.events.end() - 2)->time, observed.events.back().time);
}

TEST_F(SpeechObserver, CostsTheDelegateNoQuestion) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")));
    ASSERT_TRUE(speaker.runToEnd());
    EXPECT_EQ(2, std::exchange(speaker.heard.questions, 0));
    ObservedSpeaking observed;
    ASSERT_TRUE(speaker.say("Hello world", path("b.wav")));
    ASSERT_TRUE(speaker.runToEnd(2));
    EXPECT_EQ(2, speaker.heard.questions);
}

} // namespace
