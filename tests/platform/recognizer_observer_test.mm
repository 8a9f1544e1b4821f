// What a program hears that observes its recognizers.

#include "tests/platform/observed_listening.h"
#include "tests/platform/raised_exception.h"
#include "tests/platform/recognizer_fixture.h"
#include "tests/support/temporary_folder.h"

#include <fstream>

namespace {

using namespace zqm::platform::test;
using zqm::support::logged;
using zqm::support::TemporaryFolder;

class RecognizerObserver : public Recognition {};

TEST_F(RecognizerObserver, HearsOfEverythingInOrder) {
    Observed observed;
    Listener listener(Texts{"open", "close"});
    [listener.recognizer startListening];
    auto engine = stage_.next();
    engine->hear<SetCommands>();
    EXPECT_TRUE(engine->hear<Listen>().reportsLevel);
    std::vector<std::string> order;
    observed.onEvent = [&](const ObservedEvent&) { order.emplace_back("observer"); };
    listener.heard.onCommand = [&](NSSpeechRecognizer*) { order.emplace_back("delegate"); };
    engine->say(CommandsSet{1, {}});
    engine->say(Listening{1, ""});
    engine->say(Listening{1, ""}); // no change
    engine->say(Rejected{1, 1.5, 2.25});
    engine->say(phrase(1, 1, 1, 3, 3.5));
    engine->say(Level{1, -40.5});
    ASSERT_TRUE(observed.runUntil(ZQMListeningLevel));
    EXPECT_THAT(
        observed.events,
        ElementsAre(ObservedEvent{.kind = ZQMListeningBegan},
                    ObservedEvent{.kind = ZQMListeningRejected, .begin = 1.5, .end = 2.25},
                    ObservedEvent{.kind = ZQMListeningRecognized, .begin = 3, .end = 3.5, .command = "close"},
                    ObservedEvent{.kind = ZQMListeningLevel, .level = -40.5}));
    EXPECT_THAT(order, ElementsAre("observer", "observer", "observer", "delegate", "observer"));
}

TEST_F(RecognizerObserver, WithoutOneNoLevelIsMade) {
    Listener listener;
    [listener.recognizer startListening];
    EXPECT_FALSE(stage_.next()->hear<Listen>().reportsLevel);
}

TEST_F(RecognizerObserver, OfLevelsThatWaitTheLastOneWillDo) {
    Observed observed;
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    ASSERT_TRUE(observed.runUntil(ZQMListeningBegan));
    for (int level = -60; level < 0; ++level) {
        engine->say(Level{1, static_cast<double>(level)});
    }
    engine->say(phrase(1, 1, 0));
    ASSERT_TRUE(listener.runUntilHeard(1));
    EXPECT_EQ(-1, observed.of(ZQMListeningLevel).back().level);
}

TEST_F(RecognizerObserver, HearsWhyNothingIsHeardOnceUntilThatChanges) {
    Observed observed;
    Listener listener(Texts{"open"});
    const auto log = logged([&] {
        auto engine = start(listener);
        ASSERT_TRUE(observed.runUntil(ZQMListeningBegan));
        for (const char* const reason :
             {"no microphone", "no microphone", "no sound server", "no microphone", ""}) {
            engine->say(Listening{1, reason});
        }
        ASSERT_TRUE(observed.runUntil(ZQMListeningBegan, 2));
    });
    EXPECT_THAT(observed.kinds(), ElementsAre(ZQMListeningBegan, ZQMListeningFailed, ZQMListeningFailed,
                                              ZQMListeningFailed, ZQMListeningBegan));
    EXPECT_EQ("no microphone", observed.events[1].reason);
    EXPECT_EQ("no sound server", observed.events[2].reason);
    EXPECT_THAT(log,
                ElementsAre("Nothing can be heard: no microphone", "Nothing can be heard: no sound server",
                            "Nothing can be heard: no microphone"));
}

TEST_F(RecognizerObserver, MayStopTheRecognizerBeforeItsDelegateIsTold) {
    Observed observed;
    Listener listener(Texts{"open", "close"});
    auto engine = start(listener);
    observed.onEvent = [&](const ObservedEvent& event) {
        if (event.command == "open") {
            [listener.recognizer stopListening];
        }
    };
    engine->say(phrase(1, 1, 0));
    ASSERT_TRUE(observed.runUntil(ZQMListeningRecognized));
    [listener.recognizer startListening];
    engine->say(phrase(2, 1, 1));
    ASSERT_TRUE(listener.runUntilHeard(1));
    EXPECT_THAT(listener.heard.texts, ElementsAre("close"));
}

TEST_F(RecognizerObserver, MayDropTheRecognizer) {
    Observed observed;
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    observed.onEvent = [&](const ObservedEvent& event) {
        if (event.kind == ZQMListeningRecognized) {
            listener.release();
        }
    };
    engine->say(phrase(1, 1, 0));
    ASSERT_TRUE(observed.runUntil(ZQMListeningRecognized));
    EXPECT_TRUE(engine->isLeft());
    EXPECT_THAT(listener.heard.texts, IsEmpty());
}

TEST_F(RecognizerObserver, AnExceptionOfItsTakesNothingFromTheDelegate) {
    Observed observed;
    Listener listener(Texts{"open"});
    auto engine = start(listener);
    ASSERT_TRUE(observed.runUntil(ZQMListeningBegan));
    observed.onEvent = [](const ObservedEvent&) {
        [NSException raise:@"ZQMTestException" format:@"by the observer"];
    };
    engine->say(phrase(1, 1, 0));
    EXPECT_NE(nil, raisedBy([&] { runUntil([] { return false; }); }));
    ASSERT_TRUE(listener.runUntilHeard(1));
}

TEST_F(RecognizerObserver, ThatIsGoneHearsNothing) {
    Listener listener(Texts{"open"});
    std::size_t count = 0;
    auto engine = start(listener);
    {
        Observed observed;
        engine->say(phrase(1, 1, 0));
        ASSERT_TRUE(observed.runUntil(ZQMListeningRecognized));
        count = observed.events.size();
        observed.onEvent = [&](const ObservedEvent&) { ++count; };
    }
    engine->say(Level{1, -3});
    engine->say(phrase(1, 1, 0));
    ASSERT_TRUE(listener.runUntilHeard(2));
    EXPECT_GT(count, 0U);
    EXPECT_THAT(listener.heard.texts, ElementsAre("open", "open"));
}

// ---- files

class RecognizerFile : public RecognizerObserver {
protected:
    void TearDown() override { ZQMPlatformListenToFile(nullptr); }

    std::string write(const char* name) const {
        std::ofstream(folder_ / name) << "sound";
        return (folder_ / name).string();
    }

    TemporaryFolder folder_;
};

TEST_F(RecognizerFile, IsWhatIsListenedTo) {
    Observed observed;
    ZQMPlatformListenToFile(write("a.wav").c_str());
    Listener listener;
    [listener.recognizer startListening];
    ZQMPlatformListenToFile(nullptr); // for later starts
    auto engine = stage_.next();
    EXPECT_TRUE(engine->hear<Listen>().fromFile);
    engine->say(Listening{1, ""});
    engine->say(EndOfInput{1});
    ASSERT_TRUE(observed.runUntil(ZQMListeningEnded));
    EXPECT_THAT(observed.kinds(), ElementsAre(ZQMListeningBegan, ZQMListeningEnded));
    [listener.recognizer startListening]; // it still listens
    [listener.recognizer stopListening];
    [listener.recognizer startListening];
    engine->hear<StopListening>();
    EXPECT_EQ((Listen{.session = 2, .reportsLevel = true, .fromFile = false}), engine->hear<Listen>());
}

TEST_F(RecognizerFile, CanBeReadFromItsBeginningEachTime) {
    ZQMPlatformListenToFile(write("a.wav").c_str());
    Listener listener;
    [listener.recognizer startListening];
    auto engine = stage_.next();
    engine->hear<Listen>();
    for (std::uint64_t session = 2; session < 4; ++session) {
        [listener.recognizer stopListening];
        [listener.recognizer startListening];
        engine->hear<StopListening>();
        EXPECT_EQ(session, engine->hear<Listen>().session);
    }
}

TEST_F(RecognizerFile, OfARelativePathIsOneOfTheFolderAtThatTime) {
    write("a.wav");
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder_.path());
    ZQMPlatformListenToFile("a.wav");
    std::filesystem::current_path(before);
    Listener listener;
    [listener.recognizer startListening];
    EXPECT_TRUE(stage_.next()->hear<Listen>().fromFile);
}

TEST_F(RecognizerFile, ThatCantBeOpenedIsAFailureWithoutAnEngine) {
    const std::string locked = write("locked.wav");
    std::filesystem::permissions(locked, std::filesystem::perms::none);
    const std::string pipe = (folder_ / "pipe.wav").string();
    ASSERT_EQ(0, ::mkfifo(pipe.c_str(), 0600));
    struct Case {
        std::string path;
        std::string reason;
    };
    std::vector<Case> cases{{"/none/a.wav", "No such file or directory"},
                            {"", "No such file or directory"},
                            {folder_.path().string(), "Is a directory"},
                            {pipe, "no regular file"},
                            {"/dev/zero", "no regular file"}};
    if (::geteuid() != 0) {
        cases.push_back({locked, "Permission denied"});
    }
    for (const Case& each : cases) {
        Observed observed;
        Listener listener(Texts{"open"});
        ZQMPlatformListenToFile(each.path.c_str());
        const auto log = logged([&] {
            [listener.recognizer startListening];
            ASSERT_TRUE(observed.runUntil(ZQMListeningFailed));
        });
        const std::string reason = each.path + ": " + each.reason;
        EXPECT_THAT(log, ElementsAre("Nothing can be heard: " + reason));
        EXPECT_THAT(observed.events,
                    ElementsAre(ObservedEvent{.kind = ZQMListeningFailed, .reason = reason}));
        EXPECT_THAT(zqm::support::childrenOfThisProcess(), IsEmpty());
    }
}

TEST_F(RecognizerFile, ThatCantBeReadIsAFailureForGood) {
    Observed observed;
    ZQMPlatformListenToFile(write("a.wav").c_str());
    Listener listener(Texts{"open"});
    const auto log = logged([&] {
        [listener.recognizer startListening];
        auto engine = stage_.next();
        engine->hear<SetCommands>();
        engine->hear<Listen>();
        engine->say(Listening{1, "no sound file"});
        ASSERT_TRUE(observed.runUntil(ZQMListeningFailed));
        engine->kill(); // which is nobody's loss
        waitForNoEngine(listener);
        [listener.recognizer stopListening];
        [listener.recognizer startListening];
        engine = stage_.next();
        engine->hear<SetCommands>();
        EXPECT_EQ(2U, engine->hear<Listen>().session);
    });
    EXPECT_THAT(log,
                ElementsAre("Nothing can be heard: " + (folder_ / "a.wav").string() + ": no sound file"));
}

} // namespace
