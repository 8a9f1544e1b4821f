// Engines that end, or whose conversation with the host is cut, garbled or delayed, at every message of it.

#include "tests/endtoend/engine_faults.h"
#include "tests/support/command_listener.h"
#include "tests/support/fresh_process.h"
#include "tests/support/pulse_server.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/sound_file.h"
#include "tests/support/speech_dictionary.h"
#include "tests/support/spoken_phrases.h"

#include <gmock/gmock.h>
#include <memory>

namespace zqm::endtoend {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::ValuesIn;
using Lines = std::vector<std::string>;

// ---- a short text into a file

class WritingFaults : public EngineFaults, public testing::WithParamInterface<FaultCase> {
protected:
    virtual bool begin(Speaker& speaker) { return speaker.start(kShortText, file); }

    // There is nothing to be written.
    void beAloud() { isAloud_ = true; }

    // Of the start and all that follows.
    Lines start(Speaker& speaker) {
        return loggedByHost([&] {
            if (begin(speaker)) {
                ++starts_;
                EXPECT_TRUE(speaker.waitForEnd());
            }
        });
    }

    // It has served before, where this is of such an engine.
    void useEngine(Speaker& speaker) {
        if (GetParam().isUsed) {
            speaker.speak(kShortText, file);
            std::filesystem::remove(file);
            endsBefore_ = speaker.ends.size();
        }
    }

    [[nodiscard]] std::vector<bool> endsOf(const Speaker& speaker) const {
        return {speaker.ends.begin() + static_cast<std::ptrdiff_t>(endsBefore_), speaker.ends.end()};
    }

    void expectRefused(const Speaker& speaker, const Lines& log) {
        EXPECT_EQ(starts_, 0);
        EXPECT_THAT(endsOf(speaker), IsEmpty());
        EXPECT_THAT(log, ElementsAre(kNotStarted + GetParam().fault.reason));
    }

    void expectEndedEarly(const Speaker& speaker, const Lines& log) {
        EXPECT_EQ(starts_, 1);
        EXPECT_THAT(endsOf(speaker), ElementsAre(false));
        EXPECT_THAT(log, ElementsAre(kEndedEarly + GetParam().fault.reason));
        if (std::filesystem::exists(file)) {
            expectWhole(file);
        }
    }

    void expectCompleted(const Speaker& speaker, const Lines& log) {
        EXPECT_EQ(starts_, 1);
        EXPECT_THAT(endsOf(speaker), ElementsAre(true));
        EXPECT_THAT(log, IsEmpty());
        if (!isAloud_) {
            expectWhole(file);
        }
    }

    void expectConsistent(Speaker& speaker, const Lines& log) {
        if (GetParam().fault.effect == Fault::Effect::Either) {
            EXPECT_EQ(endsOf(speaker).size(), static_cast<std::size_t>(starts_));
            if (std::filesystem::exists(file)) {
                EXPECT_NO_THROW(support::SoundFile{file}); // the second request ended the first
            }
        } else if (!GetParam().isLoss() || GetParam().isBehind("finished") ||
                   (GetParam().isUsed && !GetParam().isBehind("started"))) { // then another engine takes over
            expectCompleted(speaker, log);
        } else if (GetParam().isBehind("started")) {
            expectEndedEarly(speaker, log);
        } else {
            expectRefused(speaker, log);
        }
    }

    void meetFault(Speaker& speaker) {
        plan(GetParam());
        const Lines log = start(speaker);
        expectConsistent(speaker, log);
    }

    void expectNextWorks(Speaker& speaker) const {
        EXPECT_FALSE(speaker.object.get("isSpeaking").asBool());
        const std::size_t ends = speaker.ends.size();
        ASSERT_TRUE(speaker.start(kShortText, next));
        EXPECT_TRUE(speaker.waitForEnd());
        EXPECT_EQ(speaker.ends.size(), ends + 1);
        EXPECT_TRUE(speaker.ends.back());
        expectWhole(next);
    }

private:
    bool isAloud_ = false;
    std::size_t endsBefore_ = 0;
    int starts_ = 0;
};

TEST_P(WritingFaults, AreToldAndOver) {
    Speaker speaker(runtime);
    useEngine(speaker);
    meetFault(speaker);
    expectNextWorks(speaker);
}

INSTANTIATE_TEST_SUITE_P(All, WritingFaults,
                         ValuesIn(thinned(newAndUsed(withFileFaults(
                             faultCases({request("speak"), event("started"), event("phoneme"), event("word"),
                                         event("phoneme", 2), event("finished")},
                                        Garbage::Once))))),
                         nameOf);

// ---- the same with a dictionary of pronunciations, which each engine is told before it speaks

class DictionaryFaults : public WritingFaults {
protected:
    void addDictionary(Speaker& speaker) {
        speaker.object.call("addSpeechDictionary",
                            support::speechDictionary(runtime, kShortText, "lAAlAAlAAlAAlAAlAAlAAlAAlAAlAA"));
    }
};

TEST_P(DictionaryFaults, LoseNothingOfIt) {
    const double without = seconds;
    {
        Speaker speaker(runtime);
        addDictionary(speaker);
        speaker.speak(kShortText, next);
        seconds = support::SoundFile(next).seconds();
        ASSERT_GT(seconds, 2 * without);
    }
    Speaker speaker(runtime);
    useEngine(speaker);
    addDictionary(speaker);
    meetFault(speaker);
    expectNextWorks(speaker);
}

INSTANTIATE_TEST_SUITE_P(All, DictionaryFaults,
                         ValuesIn(thinned(newAndUsed(faultCases({request("lexicon")}, Garbage::OnDemand)))),
                         nameOf);

// ---- the same with a command and a mistake in the text, which are told when they are heard

class MarkedFaults : public WritingFaults {
protected:
    bool begin(Speaker& speaker) override {
        return speaker.start(std::string("[[sync 0x1]][[mistake]]") + kShortText, file);
    }
};

TEST_P(MarkedFaults, AreToldAndOver) {
    Speaker speaker(runtime);
    useEngine(speaker);
    meetFault(speaker);
    expectNextWorks(speaker);
}

INSTANTIATE_TEST_SUITE_P(
    All, MarkedFaults,
    ValuesIn(thinned(newAndUsed(faultCases({event("sync"), event("problem")}, Garbage::OnDemand)), 3)),
    nameOf);

// ---- the same aloud

class AloudFaults : public WritingFaults {
protected:
    static void SetUpTestSuite() { server_ = std::make_unique<support::PulseServer>(); }
    static void TearDownTestSuite() { server_.reset(); }

    bool begin(Speaker& speaker) override {
        return speaker.object.call("startSpeakingString", kShortText).asBool();
    }

private:
    static std::unique_ptr<support::PulseServer> server_;
    const support::ScopedPulseServer use_{*server_};
};

std::unique_ptr<support::PulseServer> AloudFaults::server_;

TEST_P(AloudFaults, AreToldAndOver) {
    beAloud();
    Speaker speaker(runtime);
    useEngine(speaker);
    meetFault(speaker);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    expectNextWorks(speaker);
}

INSTANTIATE_TEST_SUITE_P(All, AloudFaults,
                         ValuesIn(thinned(newAndUsed(faultCases({request("speak"), event("started"),
                                                                 event("phoneme"), event("word"),
                                                                 event("finished")},
                                                                Garbage::OnDemand)),
                                          3)),
                         nameOf);

// ---- pausing, changing, continuing and stopping a long text

class SteeringFaults : public EngineFaults, public testing::WithParamInterface<FaultCase> {
protected:
    void steer(Speaker& speaker) {
        const auto runUntil = [&](const std::function<bool()>& holds) {
            EXPECT_TRUE(runtime.runUntil([&] { return !speaker.ends.empty() || road.isDone() || holds(); },
                                         kDeadline));
        };
        ASSERT_TRUE(speaker.start(longText(), file));
        EXPECT_TRUE(
            runtime.runUntil([&] { return !speaker.ends.empty() || !speaker.words.empty(); }, kDeadline));
        speaker.object.call("pauseSpeakingAtBoundary", 0);
        runUntil([&] { return road.tells("< paused"); });
        speaker.object.set("Rate", 200);
        speaker.object.call("continueSpeaking");
        runUntil([&] { return road.tells("< continued"); });
        speaker.object.call("stopSpeaking");
        EXPECT_FALSE(speaker.object.get("isSpeaking").asBool());
        EXPECT_TRUE(speaker.waitForEnd());
    }
};

TEST_P(SteeringFaults, EndTheSpeechAtMost) {
    Speaker speaker(runtime);
    plan(GetParam());
    const Lines log = loggedByHost([&] { steer(speaker); });
    EXPECT_THAT(speaker.ends, ElementsAre(false));
    const auto why = ElementsAre(kEndedEarly + GetParam().fault.reason);
    if (GetParam().fault.effect == Fault::Effect::Either) {
        EXPECT_THAT(log, AnyOf(IsEmpty(), why));
    } else if (GetParam().isLoss() && !GetParam().isBehind("finished")) {
        EXPECT_THAT(log, why);
    } else {
        EXPECT_THAT(log, IsEmpty());
        EXPECT_TRUE(std::filesystem::exists(file));
    }
    if (std::filesystem::exists(file)) {
        EXPECT_NO_THROW(support::SoundFile{file});
    }
    speaker.object.set("Rate", speaker.object.get("Rate").asDouble());
    const std::size_t ends = speaker.ends.size();
    ASSERT_TRUE(speaker.start(kShortText, next));
    EXPECT_TRUE(speaker.waitForEnd());
    ASSERT_EQ(speaker.ends.size(), ends + 1);
    EXPECT_TRUE(speaker.ends.back());
    EXPECT_NO_THROW(support::SoundFile{next});
}

INSTANTIATE_TEST_SUITE_P(All, SteeringFaults,
                         ValuesIn(thinned(faultCases({request("pause"), request("adjust"),
                                                      request("continue"), request("stop"), event("word"),
                                                      event("paused"), event("continued"), event("finished")},
                                                     Garbage::Once),
                                          2)),
                         nameOf);

// ---- phonemes of a text

class PhonemeFaults : public EngineFaults, public testing::WithParamInterface<FaultCase> {};

TEST_P(PhonemeFaults, AreToldOrMadeUpFor) {
    const auto ask = [](Speaker& speaker) { return speaker.object.call("phonemesFromText", kShortText); };
    Speaker other(runtime);
    const std::string wanted = ask(other).asText();
    Speaker speaker(runtime);
    if (GetParam().isUsed) {
        ask(speaker);
    }
    plan(GetParam());
    host::Value phonemes;
    const Lines log = loggedByHost([&] { phonemes = ask(speaker); });
    if (!GetParam().isLoss() || GetParam().isBehind("phonemes") || GetParam().isUsed) {
        EXPECT_EQ(phonemes.asText(), wanted);
        EXPECT_THAT(log, IsEmpty());
    } else {
        EXPECT_TRUE(phonemes.isNull());
        EXPECT_THAT(log, ElementsAre("Phonemes can't be told: " + GetParam().fault.reason));
    }
    EXPECT_EQ(ask(speaker).asText(), wanted);
    speaker.speak(kShortText, next);
}

INSTANTIATE_TEST_SUITE_P(All, PhonemeFaults,
                         ValuesIn(thinned(newAndUsed(faultCases({request("phonemes"), event("phonemes")},
                                                                Garbage::OnDemand)))),
                         nameOf);

// ---- the voices, which a process asks for once

class VoiceFaults : public testing::TestWithParam<FaultCase> {};

TEST_P(VoiceFaults, AreNotRemembered) {
    support::inFreshProcess([] {
        const FaultCase& fault = GetParam();
        const FaultyRoad road;
        host::Runtime runtime;
        loadPlugin(runtime);
        const auto count = [&] { return runtime.callShared(kSynthesizer, "availableVoicesCount").asSize(); };
        road.plan(fault.place, fault.fault.action, fault.fault.bytes);
        const std::size_t before = count();
        EXPECT_TRUE(road.isDone());
        EXPECT_EQ(before == 0, fault.isLoss() && !fault.isBehind("voices"));
        EXPECT_GT(count(), 50U);
    });
}

INSTANTIATE_TEST_SUITE_P(
    All, VoiceFaults, ValuesIn(thinned(faultCases({request("voices"), event("voices")}, Garbage::OnDemand))),
    nameOf);

// ---- listening to a file

const Lines kCommands{"stop the music", "open the window"};

class ListeningFaults : public EngineFaults, public testing::WithParamInterface<FaultCase> {
protected:
    static void SetUpTestSuite() {
        spoken_ = std::make_unique<support::TemporaryFolder>();
        support::writeSpokenPhrases(
            {"open the window", "my sister has bought a yellow umbrella", "stop the music"},
            *spoken_ / "phrases.wav");
    }
    static void TearDownTestSuite() { spoken_.reset(); }

    void SetUp() override {
        EngineFaults::SetUp();
        ZQMPlatformListenToFile((*spoken_ / "phrases.wav").c_str());
    }
    void TearDown() override {
        ZQMPlatformListenToFile(nullptr);
        EngineFaults::TearDown();
    }

    void listen(support::CommandListener& listener) {
        const std::size_t ends = listener.timesEnded();
        listener.start();
        EXPECT_TRUE(runtime.runUntil([&] { return listener.timesEnded() > ends; }, kDeadline));
        EXPECT_THAT(listener.commands(), ElementsAre("open the window", "stop the music"));
        EXPECT_THAT(listener.failures(), IsEmpty());
        listener.stop();
        listener.forget();
    }

    // What is logged while it listens once and comes to the fault.
    Lines meetFault(support::CommandListener& listener) {
        plan(GetParam());
        return loggedByHost([&] {
            listen(listener);
            EXPECT_TRUE(runtime.runUntil([&] { return road.isDone(); }, kDeadline));
        });
    }

    static void expectReplaced(const Lines& log) {
        if (GetParam().isLoss() && !GetParam().isBehind("endOfInput")) {
            EXPECT_THAT(log, ElementsAre(GetParam().fault.reason + "; another one goes on listening"));
        } else {
            EXPECT_THAT(log, IsEmpty());
        }
    }

private:
    static std::unique_ptr<support::TemporaryFolder> spoken_;
};

std::unique_ptr<support::TemporaryFolder> ListeningFaults::spoken_;

TEST_P(ListeningFaults, LoseNothing) {
    support::CommandListener listener(runtime, kCommands);
    expectReplaced(meetFault(listener));
    listen(listener);
}

INSTANTIATE_TEST_SUITE_P(All, ListeningFaults,
                         ValuesIn(thinned(faultCases({request("commands"), request("listen"),
                                                      event("commandsSet"), event("listening"),
                                                      event("level"), event("heard"), event("rejected"),
                                                      event("heard", 1), event("endOfInput")},
                                                     Garbage::OnDemand),
                                          7)),
                         nameOf);

// ---- the same for a program that wants to be heard alone

class BlockingFaults : public ListeningFaults {
private:
    support::TemporaryFolder meeting_;
    support::ScopedEnvironment user_{"XDG_RUNTIME_DIR", meeting_.path().string()}; // and nobody else's
};

TEST_P(BlockingFaults, LoseNothing) {
    support::CommandListener listener(runtime, kCommands);
    listener.object().set("blocksOtherRecognizers", true);
    expectReplaced(meetFault(listener));
    listen(listener);
}

INSTANTIATE_TEST_SUITE_P(All, BlockingFaults,
                         ValuesIn(thinned(faultCases({request("blockOthers")}, Garbage::OnDemand), 3)),
                         nameOf);

// ---- the end of listening, after which an engine that is lost is missed by nobody

class StoppedListeningFaults : public ListeningFaults {};

TEST_P(StoppedListeningFaults, AreNotTold) {
    support::CommandListener listener(runtime, kCommands);
    EXPECT_THAT(meetFault(listener), IsEmpty());
    listen(listener);
}

INSTANTIATE_TEST_SUITE_P(All, StoppedListeningFaults,
                         ValuesIn(thinned(faultCases({request("stopListening")}, Garbage::OnDemand), 3)),
                         nameOf);

} // namespace
} // namespace zqm::endtoend
