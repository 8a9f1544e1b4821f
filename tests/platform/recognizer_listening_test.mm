// The recognizer with its real engine, which hears what a voice has said into files.

#include "tests/platform/observed_listening.h"
#include "tests/platform/recognizer_listener.h"
#include "tests/support/log_lines.h"
#include "tests/support/process_table.h"
#include "tests/support/spoken_phrases.h"
#include "tests/support/temporary_folder.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace zqm::platform::test;
using testing::ElementsAre;
using testing::StartsWith;
using testing::IsEmpty;
using zqm::support::logged;
using zqm::support::TemporaryFolder;
using Texts = std::vector<std::string>;

const Texts kPhrases{"open the window", "close the door", "my sister has bought a yellow umbrella",
                     "stop the music"};
const Texts kCommands{"Stop the music!", "Open the WINDOW", "close the door."};
const Texts kHeard{"Open the WINDOW", "close the door.", "Stop the music!"};

class Hearing : public testing::Test {
protected:
    static void SetUpTestSuite() {
        folder_ = new TemporaryFolder;
        zqm::support::writeSpokenPhrases(kPhrases, phrases());
    }
    static void TearDownTestSuite() { delete folder_; }

    // The engines of earlier tests may take a moment to end.
    void SetUp() override {
        waitForNoEngine();
        ZQMPlatformListenToFile(phrases().c_str());
    }
    void TearDown() override { ZQMPlatformListenToFile(nullptr); }

    static void waitForNoEngine() {
        const Listener last; // later calls reap
        ASSERT_TRUE(waitUntil([&] {
            [last.recognizer setCommands:nil];
            return zqm::support::childrenOfThisProcess().empty();
        }));
    }

    static std::filesystem::path path(const char* name) { return folder_->path() / name; }
    static std::filesystem::path phrases() { return path("phrases.wav"); }

    // All of the file.
    void hear(const Listener& listener, std::size_t times = 1) {
        [listener.recognizer startListening];
        EXPECT_TRUE(observed_.runUntil(ZQMListeningEnded, times));
    }

    Observed observed_;

private:
    static TemporaryFolder* folder_;
};

TemporaryFolder* Hearing::folder_ = nullptr;

TEST_F(Hearing, TellsCommandsAndWhatIsNone) {
    Listener listener(kCommands);
    EXPECT_THAT(logged([&] { hear(listener); }), IsEmpty());
    EXPECT_EQ(kHeard, listener.heard.texts);
    Texts recognized;
    std::size_t rejected = 0;
    double last = 0;
    for (const ObservedEvent& event : observed_.events) {
        if (event.kind == ZQMListeningRecognized || event.kind == ZQMListeningRejected) {
            EXPECT_GE(event.begin, last);
            EXPECT_GT(event.end, event.begin);
            last = event.end;
            rejected += event.kind == ZQMListeningRejected ? 1 : 0;
            if (event.kind == ZQMListeningRecognized) {
                recognized.push_back(event.command);
            }
        }
    }
    EXPECT_EQ(kHeard, recognized);
    EXPECT_EQ(1U, rejected);
    EXPECT_EQ(ZQMListeningBegan, observed_.events.front().kind);
    EXPECT_EQ(ZQMListeningEnded, observed_.events.back().kind);
    EXPECT_FALSE(observed_.of(ZQMListeningLevel).empty());
}

TEST_F(Hearing, WithoutCommandsHearsNone) {
    Listener none;
    hear(none);
    Listener empty(Texts{});
    hear(empty, 2);
    EXPECT_THAT(none.heard.texts, IsEmpty());
    EXPECT_THAT(empty.heard.texts, IsEmpty());
    EXPECT_THAT(observed_.of(ZQMListeningRecognized), IsEmpty());
}

TEST_F(Hearing, BeginsAnewEachTime) {
    Listener listener(kCommands);
    for (std::size_t time = 1; time <= 3; ++time) {
        hear(listener, time);
        [listener.recognizer stopListening];
        EXPECT_EQ(kHeard, listener.heard.texts);
        listener.heard.texts.clear();
    }
    EXPECT_EQ(1U, zqm::support::childrenOfThisProcess().size());
}

TEST_F(Hearing, GoesByTheCommandsThatAreSet) {
    Listener listener(Texts{"open the window"});
    hear(listener);
    [listener.recognizer stopListening];
    [listener.recognizer setCommands:arrayOf({"close the door"})];
    hear(listener, 2);
    EXPECT_THAT(listener.heard.texts, ElementsAre("open the window", "close the door"));
}

// How far the engine has come by then is its affair, but the list before is over with the first command of
// the new one.
TEST_F(Hearing, TakesNewCommandsBetweenPhrases) {
    Texts many;
    for (int index = 0; index < 10; ++index) {
        many.insert(many.end(), {"open the window", "close the door"});
    }
    zqm::support::writeSpokenPhrases(many, path("many.wav"));
    ZQMPlatformListenToFile(path("many.wav").c_str());
    Listener listener(Texts{"open the window", "close the door"});
    bool isSet = false;
    listener.heard.onCommand = [&](NSSpeechRecognizer* sender) {
        if (!std::exchange(isSet, true)) {
            [sender setCommands:arrayOf({"Open the window", "Close the door"})];
        }
    };
    hear(listener);
    ASSERT_EQ(many.size(), listener.heard.texts.size());
    const auto isNew = [](const std::string& text) { return text.front() == 'O' || text.front() == 'C'; };
    EXPECT_TRUE(std::ranges::is_partitioned(listener.heard.texts, std::not_fn(isNew)));
    for (std::size_t index = 0; index < many.size(); ++index) {
        EXPECT_EQ(many[index].substr(1), listener.heard.texts[index].substr(1));
    }
}

TEST_F(Hearing, EndsWithTheStopInAHandler) {
    Listener listener(kCommands);
    listener.heard.onCommand = [](NSSpeechRecognizer* sender) { [sender stopListening]; };
    [listener.recognizer startListening];
    ASSERT_TRUE(listener.runUntilHeard(1));
    Listener other(kCommands);
    hear(other);
    EXPECT_THAT(listener.heard.texts, ElementsAre(kHeard.front()));
    EXPECT_EQ(kHeard, other.heard.texts);
}

TEST_F(Hearing, AnObjectMayEndAtAnyTime) {
    for (std::size_t count = 0; count < 3; ++count) {
        Listener listener(kCommands);
        [listener.recognizer startListening];
        ASSERT_TRUE(listener.runUntilHeard(count));
    }
    Listener other(kCommands);
    hear(other);
    EXPECT_EQ(kHeard, other.heard.texts);
    EXPECT_TRUE(waitUntil([&] {
        [other.recognizer setCommands:nil];
        return zqm::support::childrenOfThisProcess().size() == 1;
    }));
}

TEST_F(Hearing, TwoHearTheirOwnCommands) {
    Listener first(Texts{"open the window"});
    Listener second(Texts{"close the door", "stop the music"});
    [first.recognizer startListening];
    hear(second, 2);
    EXPECT_THAT(first.heard.texts, ElementsAre("open the window"));
    EXPECT_THAT(second.heard.texts, ElementsAre("close the door", "stop the music"));
}

TEST_F(Hearing, CommandsThatNobodyCanSayAreRefused) {
    Listener listener(Texts{"?!", "open the window", ""});
    const auto log = logged([&] { hear(listener); });
    EXPECT_THAT(listener.heard.texts, ElementsAre("open the window"));
    EXPECT_THAT(log, ElementsAre(StartsWith("\"?!\" can't be listened for: "),
                                 StartsWith("\"\" can't be listened for: ")));
    EXPECT_EQ(2U, observed_.of(ZQMListeningCommandRefused).size());
}

// ---- files

TEST_F(Hearing, AFileThatIsNoSoundFileIsAFailure) {
    for (const char* const content : {"", "This is text, not sound.", "RIFF"}) {
        std::ofstream(path("bad.wav")) << content;
        ZQMPlatformListenToFile(path("bad.wav").c_str());
        Listener listener(kCommands);
        observed_.events.clear();
        const auto log = logged([&] {
            [listener.recognizer startListening];
            ASSERT_TRUE(observed_.runUntil(ZQMListeningFailed));
        });
        EXPECT_THAT(observed_.kinds(), ElementsAre(ZQMListeningFailed));
        EXPECT_THAT(observed_.events.front().reason, StartsWith(path("bad.wav").string() + ": "));
        EXPECT_THAT(log, ElementsAre("Nothing can be heard: " + observed_.events.front().reason));
        EXPECT_THAT(listener.heard.texts, IsEmpty());
    }
}

// ---- engines that are killed

class HearingWithLosses : public Hearing, public testing::WithParamInterface<std::size_t> {
protected:
    static void killEngines() {
        for (const pid_t engine : zqm::support::childrenOfThisProcess()) {
            ::kill(engine, SIGKILL);
        }
    }
};

TEST_P(HearingWithLosses, TellsEachCommandOnce) {
    Listener listener(kCommands);
    listener.heard.onCommand = [&](NSSpeechRecognizer*) {
        if (listener.heard.texts.size() == GetParam()) {
            killEngines();
        }
    };
    [listener.recognizer startListening];
    if (GetParam() == 0) {
        killEngines();
    }
    ASSERT_TRUE(observed_.runUntil(ZQMListeningEnded));
    EXPECT_EQ(kHeard, listener.heard.texts);
    EXPECT_EQ(1U, observed_.of(ZQMListeningRejected).size());
}

INSTANTIATE_TEST_SUITE_P(AfterSoManyCommands, HearingWithLosses, testing::Values(0, 1, 2, 3));

TEST_F(HearingWithLosses, AreOfNoInterestAfterTheEnd) {
    Listener listener(kCommands);
    hear(listener);
    killEngines();
    [listener.recognizer stopListening];
    listener.heard.texts.clear();
    hear(listener, 2);
    EXPECT_EQ(kHeard, listener.heard.texts);
}

// ---- what is held

TEST_F(Hearing, ListeningLosesNothing) {
    const auto listenTo = [&](int objects) {
        for (int index = 0; index < objects; ++index) {
            NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
            Listener listener(kCommands);
            hear(listener, observed_.of(ZQMListeningEnded).size() + 1);
            [pool drain];
        }
        observed_.events.clear();
        waitForNoEngine();
        return zqm::support::openDescriptors();
    };
    const std::size_t before = listenTo(1);
    EXPECT_EQ(before, listenTo(3));
}

} // namespace
