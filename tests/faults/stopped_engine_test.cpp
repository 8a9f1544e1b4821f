// Engines that stand still, and engines that hardly get on.

#include "tests/faults/program.h"
#include "tests/support/command_listener.h"
#include "tests/support/log_lines.h"
#include "tests/support/monitor_recording.h"
#include "tests/support/process_table.h"
#include "tests/support/pulse_server.h"
#include "tests/support/sound_file.h"
#include "tests/support/spoken_phrases.h"

#include <atomic>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace zqm::faults {
namespace {

using live::Speaker;

// How long an engine has for an answer, and how long it is not noticed at most that it stands still.
constexpr double kSecondsToAnswer = 10;
constexpr double kSecondsToNotice = 20;

// A busy machine takes so much longer.
#ifdef __SANITIZE_ADDRESS__
constexpr double kBusy = 3;
#else
constexpr double kBusy = 1.75;
#endif

class StoppedEngine : public testing::Test {
protected:
    void SetUp() override { program_.expectWorks(); }
    // The objects of the test have ended.
    void TearDown() override { program_.expectNoEngine(); }

    // Of the only engine there is.
    static pid_t stopEngine() {
        const std::vector<pid_t> all = engines();
        if (all.size() != 1) {
            throw std::runtime_error("there is not one engine, but " + std::to_string(all.size()));
        }
        support::halt(all.front());
        return all.front();
    }

    // Stops the engine of a speech that is begun, and waits for what the host program is told.
    void expectNoticed(Speaker& speaker) {
        ASSERT_TRUE(speaker.waitForWords(1));
        const pid_t stopped = stopEngine();
        double seconds = 0;
        const std::vector<std::string> log =
            support::logged([&] { seconds = secondsOf([&] { EXPECT_TRUE(speaker.waitForEnd()); }); });
        EXPECT_EQ(log, std::vector<std::string>{"Speech ended early: the speech engine does not answer"});
        EXPECT_LT(seconds, kBusy * kSecondsToNotice);
        EXPECT_EQ(speaker.finished(), false);
        EXPECT_EQ(speaker.timesFinished(), 1U);
        EXPECT_TRUE(eventually([&] { return !support::isAlive(stopped); }));
    }

    static double secondsOf(const std::function<void()>& call) {
        const double begin = support::monotonicSeconds();
        call();
        return support::monotonicSeconds() - begin;
    }

    Program program_;
};

TEST_F(StoppedEngine, ThatIsIdleIsReplacedByTheNextStart) {
    Speaker speaker(program_.runtime);
    program_.expectWorks(speaker);
    const pid_t stopped = stopEngine();
    const std::filesystem::path file = program_.folder / "speech.wav";
    EXPECT_LT(secondsOf([&] { EXPECT_TRUE(speaker.startToFile(kText, file)); }), kBusy * kSecondsToAnswer);
    EXPECT_TRUE(eventually([&] { return !support::isAlive(stopped); }));
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_EQ(speaker.finished(), true);
    std::filesystem::remove(file);
    program_.expectWorks(speaker);
}

TEST_F(StoppedEngine, ThatWritesAFileIsGivenUpByTheStop) {
    Speaker speaker(program_.runtime);
    ASSERT_TRUE(speaker.startToFile(veryLongText(), program_.folder / "speech.wav"));
    ASSERT_TRUE(speaker.waitForWords(1));
    const pid_t stopped = stopEngine();
    program_.runtime.runFor(host::Seconds(0.5));
    EXPECT_FALSE(speaker.finished());
    EXPECT_TRUE(speaker.object().get("isSpeaking").asBool());
    EXPECT_LT(secondsOf([&] { speaker.stop(); }), kBusy * kSecondsToAnswer);
    EXPECT_FALSE(speaker.object().get("isSpeaking").asBool());
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_EQ(speaker.finished(), false);
    EXPECT_EQ(speaker.timesFinished(), 1U);
    EXPECT_TRUE(eventually([&] { return !support::isAlive(stopped); }));
    program_.expectEmptyFolder();
    program_.expectWorks(speaker);
}

TEST_F(StoppedEngine, ThatPlaysHoldsUpNoStopAndIsReplacedByTheNextStart) {
    const support::PulseServer server;
    const support::ScopedPulseServer use(server);
    Speaker speaker(program_.runtime);
    ASSERT_TRUE(speaker.start(live::longText()));
    ASSERT_TRUE(speaker.waitForWords(2));
    const pid_t stopped = stopEngine();
    speaker.stop();
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_EQ(speaker.finished(), false);
    EXPECT_TRUE(support::isAlive(stopped)) << "nobody waited for it";
    EXPECT_LT(secondsOf([&] { EXPECT_TRUE(speaker.start(kText)); }), kBusy * kSecondsToAnswer);
    EXPECT_TRUE(eventually([&] { return !support::isAlive(stopped); }));
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_EQ(speaker.finished(), true);
}

TEST_F(StoppedEngine, ThatGoesOnLosesNothing) {
    const std::filesystem::path file = program_.folder / "speech.wav";
    constexpr int kSentences = 100;
    Speaker speaker(program_.runtime);
    ASSERT_TRUE(speaker.startToFile(sentences(kSentences), file));
    ASSERT_TRUE(speaker.waitForWords(1));
    const pid_t stopped = stopEngine();
    program_.runtime.runFor(host::Seconds(0.5));
    ::kill(stopped, SIGCONT);
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_EQ(speaker.finished(), true);
    EXPECT_EQ(speaker.words().size(), kSentences * kWordsOfText);
    EXPECT_TRUE(speaker.textsWereWhole());
}

TEST_F(StoppedEngine, ThatWritesAFileIsNoticed) {
    Speaker speaker(program_.runtime);
    ASSERT_TRUE(speaker.startToFile(veryLongText(), program_.folder / "speech.wav"));
    expectNoticed(speaker);
    program_.expectEmptyFolder();
    program_.expectWorks(speaker);
}

TEST_F(StoppedEngine, ThatPlaysIsNoticed) {
    const support::PulseServer server;
    const support::ScopedPulseServer use(server);
    Speaker speaker(program_.runtime);
    ASSERT_TRUE(speaker.start(live::longText()));
    expectNoticed(speaker);
    program_.expectWorks(speaker);
}

// Its answer comes while the host waits for another.
TEST_F(StoppedEngine, ThatGoesOnWhenItWasAskedWhetherItLivesIsKept) {
    Speaker speaker(program_.runtime);
    ASSERT_TRUE(speaker.startToFile(veryLongText(), program_.folder / "speech.wav"));
    ASSERT_TRUE(speaker.waitForWords(1));
    const pid_t stopped = stopEngine();
    program_.runtime.runFor(host::Seconds(12)); // asked after 10
    const std::vector<std::string> log = support::logged([&] {
        ::kill(stopped, SIGCONT);
        EXPECT_FALSE(speaker.object().call("phonemesFromText", kText).isNull());
    });
    EXPECT_EQ(log, std::vector<std::string>{});
    EXPECT_EQ(engines(), std::vector<pid_t>{stopped});
    EXPECT_TRUE(speaker.object().get("isSpeaking").asBool());
    speaker.stop();
}

TEST_F(StoppedEngine, OfADroppedObjectIsKilledInTheEnd) {
    {
        Speaker speaker(program_.runtime);
        program_.expectWorks(speaker);
        stopEngine();
    }
    EXPECT_LT(secondsOf([&] { program_.expectNoEngine(); }), kBusy * kSecondsToAnswer);
}

class StoppedListening : public StoppedEngine {
public:
    static constexpr int kTimes = 6;

    StoppedListening() {
        support::writeSpokenPhrases(std::vector<std::string>(kTimes, kCommand), file_);
        ZQMPlatformListenToFile(file_.c_str());
    }
    ~StoppedListening() override { ZQMPlatformListenToFile(nullptr); }

    bool waitFor(const std::function<bool()>& holds) { return program_.runtime.runUntil(holds, kPatience); }

    static constexpr const char* kCommand = "open the window";
    support::TemporaryFolder sounds_;
    std::filesystem::path file_ = sounds_ / "commands.wav";
};

TEST_F(StoppedListening, ThatGoesOnLosesNothing) {
    support::CommandListener listener(program_.runtime, {kCommand, "close the door"});
    listener.start();
    ASSERT_TRUE(waitFor([&] { return !listener.answers().empty(); }));
    const pid_t stopped = stopEngine();
    program_.runtime.runFor(host::Seconds(0.5)); // what it had said before
    const std::size_t heard = listener.answers().size();
    program_.runtime.runFor(host::Seconds(0.5));
    EXPECT_EQ(listener.answers().size(), heard);
    EXPECT_EQ(listener.failures(), std::vector<std::string>{});
    ::kill(stopped, SIGCONT);
    ASSERT_TRUE(waitFor([&] { return listener.timesEnded() == 1; }));
    EXPECT_EQ(listener.commands(), std::vector<std::string>(kTimes, kCommand));
}

TEST_F(StoppedListening, HoldsUpNeitherTheStopNorAnotherRecognizer) {
    {
        support::CommandListener listener(program_.runtime, {kCommand, "close the door"});
        listener.start();
        ASSERT_TRUE(waitFor([&] { return !listener.answers().empty(); }));
        const pid_t stopped = stopEngine();
        const double seconds = secondsOf([&] { listener.stop(); });
        EXPECT_LT(seconds, kSecondsToAnswer);
        EXPECT_TRUE(support::isAlive(stopped)) << "nobody waited for it";
    }
    program_.expectHears();
}

TEST_F(StoppedListening, IsNoticedAndAnotherEngineHearsTheRest) {
    {
        support::CommandListener listener(program_.runtime, {kCommand, "close the door"});
        listener.start();
        ASSERT_TRUE(waitFor([&] { return !listener.answers().empty(); }));
        const pid_t stopped = stopEngine();
        double seconds = 0;
        const std::vector<std::string> log = support::logged([&] {
            seconds = secondsOf([&] { EXPECT_TRUE(waitFor([&] { return !support::isAlive(stopped); })); });
            EXPECT_TRUE(waitFor([&] { return listener.timesEnded() == 1; }));
        });
        EXPECT_LT(seconds, kBusy * kSecondsToNotice);
        EXPECT_EQ(log, std::vector<std::string>{
                           "the speech engine does not answer; another one goes on listening"});
        EXPECT_EQ(listener.commands(), std::vector<std::string>(kTimes, kCommand));
        EXPECT_EQ(listener.failures(), std::vector<std::string>{});
    }
    program_.expectHears();
}

// An engine that stands still for most of the time.
class HaltingEngine {
public:
    explicit HaltingEngine(pid_t engine)
        : engine_(engine), process_(static_cast<int>(::syscall(SYS_pidfd_open, engine, 0))),
          halting_([this] { halt(); }) {}
    ~HaltingEngine() {
        isOver_ = true;
        halting_.join();
        ::close(process_);
    }
    HaltingEngine(const HaltingEngine&) = delete;
    HaltingEngine& operator=(const HaltingEngine&) = delete;

    int halts() const { return halts_; } // in which it was seen to stand still

private:
    void signal(int number) const { ::syscall(SYS_pidfd_send_signal, process_, number, nullptr, 0); }

    void halt() {
        while (!isOver_) {
            signal(SIGSTOP);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            halts_ += support::stateOf(engine_) == 'T' ? 1 : 0;
            signal(SIGCONT);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    pid_t engine_;
    int process_;
    std::atomic<bool> isOver_ = false;
    std::atomic<int> halts_ = 0;
    std::thread halting_;
};

TEST_F(StoppedEngine, AgainAndAgainWritesTheSameFile) {
    const support::TemporaryFolder folder;
    const std::filesystem::path file = folder / "speech.wav";
    const std::filesystem::path slowly = folder / "slowly.wav";
    const std::string text = sentences(40);
    std::vector<support::WordRange> words;
    {
        Speaker speaker(program_.runtime);
        program_.expectWorks(speaker);
        ASSERT_TRUE(speaker.startToFile(text, file));
        ASSERT_TRUE(speaker.waitForEnd());
        words = speaker.words();
    }
    program_.expectNoEngine();
    {
        Speaker speaker(program_.runtime);
        program_.expectWorks(speaker);
        const HaltingEngine halting(engines().front());
        ASSERT_TRUE(eventually([&] { return halting.halts() > 0; }));
        ASSERT_TRUE(speaker.startToFile(text, slowly));
        ASSERT_TRUE(speaker.waitForEnd());
        EXPECT_EQ(speaker.finished(), true);
        EXPECT_EQ(speaker.words(), words);
        EXPECT_GT(halting.halts(), 2);
    }
    EXPECT_EQ(support::SoundFile(file).samples, support::SoundFile(slowly).samples);
}

} // namespace
} // namespace zqm::faults
