// Engines that stop, or whose answers never come: the host waits for them as long as it is documented, and
// kills them.

#include "tests/endtoend/engine_faults.h"
#include "tests/support/fresh_process.h"
#include "tests/support/sound_file.h"

#include <chrono>
#include <gmock/gmock.h>

namespace zqm::endtoend {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Values;

// The deadline is 10 seconds; the rest is for a machine that has much else to do, and for engines that are
// slow where every access to memory is checked.
#ifdef __SANITIZE_ADDRESS__
constexpr std::chrono::seconds kLongestWait{40};
#else
constexpr std::chrono::seconds kLongestWait{20};
#endif

class EngineDeadlines : public EngineFaults, public testing::WithParamInterface<FaultCase> {
protected:
    // What the body logs. It waits for one deadline.
    static std::vector<std::string> loggedInTime(const std::function<void()>& body) {
        const auto start = std::chrono::steady_clock::now();
        std::vector<std::string> log = loggedByHost(body);
        EXPECT_LT(std::chrono::steady_clock::now() - start, kLongestWait);
        return log;
    }
};

FaultCase stopped(const Place& place, bool isUsed = false) {
    return {place, {.name = "stop", .action = "stop", .reason = kMute}, isUsed};
}

FaultCase leftOut(const Place& place, bool isUsed = false) {
    return {place, {.name = "drop", .action = "drop", .reason = kMute}, isUsed};
}

FaultCase babbled(const Place& place, bool isUsed = false) {
    return {place, {.name = "babble", .action = "babble", .reason = kMute}, isUsed};
}

class StartDeadline : public EngineDeadlines {};

TEST_P(StartDeadline, IsKept) {
    Speaker speaker(runtime);
    std::vector<bool> ends;
    if (GetParam().isUsed) {
        speaker.speak(kShortText, file);
        std::filesystem::remove(file);
        ends = speaker.ends;
    }
    plan(GetParam());
    bool isStarted = false;
    const auto log = loggedInTime([&] { isStarted = speaker.start(kShortText, file); });
    EXPECT_EQ(isStarted, GetParam().isUsed) << "by another engine";
    if (isStarted) {
        EXPECT_THAT(log, IsEmpty());
        EXPECT_TRUE(speaker.waitForEnd());
        ends.push_back(true);
        expectWhole(file);
    } else {
        EXPECT_THAT(log, ElementsAre(std::string(kNotStarted) + kMute));
        EXPECT_TRUE(std::filesystem::is_empty(folder.path()) || GetParam().fault.action == "drop");
    }
    EXPECT_EQ(speaker.ends, ends);
    speaker.speak(kShortText, next);
    expectWhole(next);
}

INSTANTIATE_TEST_SUITE_P(All, StartDeadline,
                         Values(stopped(request("speak")), stopped(request("speak"), true),
                                stopped(event("started"), true), leftOut(request("speak"), true),
                                leftOut(event("started")), babbled(request("speak")),
                                babbled(event("started"), true)),
                         nameOf);

class StopDeadline : public EngineDeadlines {};

TEST_P(StopDeadline, IsKept) {
    Speaker speaker(runtime);
    ASSERT_TRUE(speaker.start(longText(), file));
    ASSERT_TRUE(speaker.waitForWord());
    plan(GetParam());
    const auto log = loggedInTime([&] {
        speaker.object.call("stopSpeaking");
        EXPECT_FALSE(speaker.object.get("isSpeaking").asBool());
        EXPECT_TRUE(speaker.waitForEnd());
    });
    EXPECT_THAT(speaker.ends, ElementsAre(false));
    EXPECT_THAT(log, ElementsAre(std::string(kEndedEarly) + kMute));
    speaker.speak(kShortText, next);
    expectWhole(next);
}

INSTANTIATE_TEST_SUITE_P(All, StopDeadline,
                         Values(stopped(request("stop")), leftOut(event("finished")),
                                babbled(event("finished"))),
                         nameOf);

class PhonemeDeadline : public EngineDeadlines {};

TEST_P(PhonemeDeadline, IsKept) {
    Speaker speaker(runtime);
    speaker.object.call("startSpeakingString", ""); // which no engine hears of
    plan(GetParam());
    host::Value phonemes;
    const auto log = loggedInTime([&] { phonemes = speaker.object.call("phonemesFromText", kShortText); });
    EXPECT_TRUE(phonemes.isNull());
    EXPECT_THAT(log, ElementsAre(std::string("Phonemes can't be told: ") + kMute));
    EXPECT_FALSE(speaker.object.call("phonemesFromText", kShortText).isNull());
}

INSTANTIATE_TEST_SUITE_P(All, PhonemeDeadline, Values(stopped(event("phonemes")), babbled(event("phonemes"))),
                         nameOf);

TEST(VoiceDeadline, IsKept) {
    support::inFreshProcess([] {
        const FaultyRoad road;
        host::Runtime runtime;
        loadPlugin(runtime);
        const auto count = [&] { return runtime.callShared(kSynthesizer, "availableVoicesCount").asSize(); };
        road.plan(event("voices"), "stop");
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(count(), 0U);
        EXPECT_LT(std::chrono::steady_clock::now() - start, kLongestWait);
        EXPECT_GT(count(), 50U);
    });
}

// In the middle of its speech nobody waits for an engine, and letting it go neither: whatever is done next
// does not depend on it.
class StoppedAmidSpeech : public EngineFaults {
protected:
    void stopEngine(Speaker& speaker) {
        road.plan(event("word"), "stop");
        ASSERT_TRUE(speaker.start(longText(), file));
        ASSERT_TRUE(runtime.runUntil([&] { return road.isDone(); }, kDeadline));
    }
};

TEST_F(StoppedAmidSpeech, IsFollowedByAnotherEngine) {
    Speaker speaker(runtime);
    stopEngine(speaker);
    EXPECT_TRUE(speaker.object.get("isSpeaking").asBool());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(speaker.start(kShortText, next));
    EXPECT_LT(std::chrono::steady_clock::now() - start, kLongestWait);
    EXPECT_TRUE(speaker.waitForEnd());
    EXPECT_TRUE(speaker.waitForEnd());
    EXPECT_THAT(speaker.ends, ElementsAre(false, true));
    EXPECT_FALSE(std::filesystem::exists(file));
    expectWhole(next);
}

TEST_F(StoppedAmidSpeech, IsKilledWhenItsObjectIsGone) {
    {
        Speaker speaker(runtime);
        stopEngine(speaker);
    }
    Speaker other(runtime);
    other.speak(kShortText, next);
    EXPECT_FALSE(std::filesystem::exists(file));
}

} // namespace
} // namespace zqm::endtoend
