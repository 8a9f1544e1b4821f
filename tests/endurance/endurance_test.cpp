// The loaded library over many utterances and objects: nothing may be left behind by one more.

#include "tests/endurance/holdings.h"
#include "tests/support/process_table.h"
#include "tests/support/sibling_library.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <zqmhost/zqmhost.h>

namespace {

using zqm::endurance::Holdings;
using zqm::endurance::residentPagesOf;
using zqm::endurance::waitForEngines;
using zqm::host::Arguments;
using zqm::host::Object;
using zqm::host::Runtime;

#if defined(__SANITIZE_ADDRESS__)
constexpr int kUtterances = 400; // the sanitizer's own bookkeeping is most of the time and memory there
#else
constexpr int kUtterances = 10'000;
#endif
// Enough for a round to fill what the host keeps of handles whose last lock is gone.
constexpr int kObjects = kUtterances / 25;
constexpr zqm::host::Seconds kPatience{300};

class Endurance : public testing::Test {
protected:
    Endurance() { zqm::support::loadPlugin(runtime, ZQM_PLUGIN); }

    void speakToTheEnd(Object& synthesizer) {
        finished = 0;
        completed = false;
        ASSERT_TRUE(synthesizer.call("startSpeakingString", "Hi.", url).asBool());
        ASSERT_TRUE(runtime.runUntil([this] { return finished > 0; }, kPatience));
        ASSERT_TRUE(completed);
    }
    Object newSynthesizer() {
        Object synthesizer = runtime.create("NSSpeechSynthesizerZQM");
        synthesizer.call("Constructor");
        synthesizer.on("didFinishSpeaking", [this](const Arguments& arguments) {
            ++finished;
            completed = arguments[0].asBool();
        });
        synthesizer.on("willSpeakWord", [this](const Arguments&) { ++words; });
        return synthesizer;
    }

    Runtime runtime;
    zqm::support::TemporaryFolder folder;
    std::string url = "file://" + (folder / "hi.wav").string();
    int finished = 0;
    int words = 0;
    bool completed = false;
};

TEST_F(Endurance, ManyShortUtterancesOfOneObjectLoseNothing) {
    Object synthesizer = newSynthesizer();
    const auto round = [&] {
        for (int i = 0; i < kUtterances / 2; ++i) {
            speakToTheEnd(synthesizer);
        }
    };
    round();
    const Holdings once;
    const auto ledger = runtime.ledger();
    const auto engines = zqm::support::childrenOfThisProcess();
    ASSERT_EQ(engines.size(), 1U);
    const std::size_t enginePages = residentPagesOf(engines.front());

    round();
    const Holdings twice;
    EXPECT_EQ(words, kUtterances);
    EXPECT_EQ(twice.descriptors, once.descriptors);
    EXPECT_EQ(zqm::support::childrenOfThisProcess(), engines);
    EXPECT_EQ(runtime.ledger(), ledger);
    // Less than one byte an utterance: room for a cache that grew once, none for a leak.
    EXPECT_LT(twice.bytes, once.bytes + kUtterances / 2);
    RecordProperty("enginePagesGrown", std::to_string(residentPagesOf(engines.front()) - enginePages));
#if !defined(__SANITIZE_ADDRESS__)
    EXPECT_LE(residentPagesOf(engines.front()), enginePages + 64);
#endif
    EXPECT_TRUE(runtime.reports().empty());
    EXPECT_GT(zqm::support::rms(zqm::support::SoundFile(folder / "hi.wav").samples), 0.0);
}

TEST_F(Endurance, ManyObjectsLoseNothing) {
    const auto round = [&] {
        for (int i = 0; i < kObjects; ++i) {
            Object synthesizer = newSynthesizer();
            speakToTheEnd(synthesizer);
        }
        EXPECT_TRUE(waitForEngines(runtime, kPatience));
    };
    round();
    const Holdings once;
    const auto ledger = runtime.ledger();
    round();
    const Holdings twice;
    EXPECT_EQ(twice.descriptors, once.descriptors);
    EXPECT_EQ(twice.children, 0U);
    EXPECT_EQ(runtime.ledger(), ledger);
    EXPECT_LT(twice.bytes, once.bytes + static_cast<std::size_t>(kObjects) * 8);
    EXPECT_TRUE(runtime.reports().empty());
}

} // namespace
