// How far word events and the words' sound are apart. Reported, because it depends on the machine and on
// what else runs; that every word has its event and its sound is what fails the test. A word that begins
// with a plosive (two, ten) begins with its closure, some 30 to 50 ms before anything is heard of it.

#include <iostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/live/delays.h"
#include "tests/live/speaker.h"
#include "tests/support/monitor_recording.h"
#include "tests/support/pulse_server.h"
#include "tests/support/sounded_parts.h"
#include "tests/support/word_fixtures.h"

namespace zqm::live {
namespace {

// Of one-word sentences, so that each word is heard by itself, after a silence.
constexpr const char* kNumbers =
    "⟦One⟧. ⟦Two⟧. ⟦Three⟧. ⟦Four⟧. ⟦Five⟧. ⟦Six⟧. ⟦Seven⟧. ⟦Eight⟧. ⟦Nine⟧. ⟦Ten⟧. ⟦Eleven⟧. ⟦Twelve⟧.";
constexpr const char* kNames =
    "⟦Monday⟧! ⟦Winter⟧! ⟦Garden⟧! ⟦Berlin⟧! ⟦Lemon⟧! ⟦Doctor⟧! ⟦Alice⟧! ⟦Dinner⟧! ⟦Animal⟧! ⟦Mother⟧!";

struct TimedText {
    const char* name;
    const char* marked;
    double rate;    // words a minute
    double silence; // seconds, the least between two words; longer than any inside one
};

constexpr TimedText kRuns[] = {
    {"numbers, 175 words a minute", kNumbers, 175, 0.15},
    {"numbers, 250 words a minute", kNumbers, 250, 0.09},
    {"names, 175 words a minute", kNames, 175, 0.15},
    {"names, 130 words a minute", kNames, 130, 0.2},
};

TEST(WordTiming, EveryWordIsHeardAndHasItsEvent) {
    const support::PulseServer server;
    const support::ScopedPulseServer use(server);
    host::Runtime runtime;
    loadPlugin(runtime);
    Speaker speaker(runtime);
    DelayTable table("word event minus word heard");
    for (const TimedText& run : kRuns) {
        SCOPED_TRACE(run.name);
        const support::MarkedText text = support::parseMarkedText(run.marked);
        const support::MonitorRecording recording(server);
        speaker.object().set("Rate", run.rate);
        ASSERT_TRUE(speaker.start(text.text));
        ASSERT_TRUE(speaker.waitForEnd());
        ASSERT_TRUE(recording.catchUp());
        EXPECT_EQ(speaker.finished(), true);
        EXPECT_EQ(speaker.words(), text.words);
        EXPECT_TRUE(speaker.textsWereWhole());

        const std::vector<support::SoundedPart> parts = support::soundedParts(
            recording.samples(), static_cast<std::size_t>(run.silence * recording.rate()));
        ASSERT_EQ(parts.size(), speaker.wordTimes().size());
        std::vector<double> delays;
        for (std::size_t index = 0; index < parts.size(); ++index) {
            delays.push_back(speaker.wordTimes()[index] - recording.timeOf(parts[index].begin));
        }
        table.add(run.name, delays);
    }
    std::cout << table.text();
    EXPECT_TRUE(runtime.reports().empty());
}

} // namespace
} // namespace zqm::live
