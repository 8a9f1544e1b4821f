// A host program that listens for commands through the built library, to what a voice has said into a file.

#include "tests/endtoend/speaking.h"
#include "tests/support/command_listener.h"
#include "tests/support/process.h"
#include "tests/support/process_table.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/sound_file.h"
#include "tests/support/spoken_phrases.h"
#include "tests/support/temporary_folder.h"

#include <csignal>
#include <gmock/gmock.h>
#include <memory>
#include <sstream>
#include <thread>

namespace zqm::endtoend {
namespace {

using support::CommandListener;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

const Texts kPhrases{"open the window", "close the door", "my sister has bought a yellow umbrella",
                     "stop the music"};
const Texts kCommands{"Stop the Music!", "open the window, please - no: open the window", "OPEN the window",
                      "Close the door."};
const Texts kHeard{"OPEN the window", "Close the door.", "Stop the Music!"};

class Recognizing : public SpeakingTest {
protected:
    static void SetUpTestSuite() {
        spoken_ = std::make_unique<support::TemporaryFolder>();
        support::writeSpokenPhrases(kPhrases, phrases());
    }
    static void TearDownTestSuite() { spoken_.reset(); }

    void SetUp() override { ZQMPlatformListenToFile(phrases().c_str()); }
    void TearDown() override {
        ZQMPlatformListenToFile(nullptr);
        SpeakingTest::TearDown();
    }

    static std::filesystem::path phrases() { return *spoken_ / "phrases.wav"; }

    // Until so many times a file was heard to its end.
    void runToEnd(const CommandListener& listener, std::size_t times = 1) {
        EXPECT_TRUE(runtime.runUntil([&] { return listener.timesEnded() >= times; }, kDeadline));
    }

private:
    static std::unique_ptr<support::TemporaryFolder> spoken_;
};

std::unique_ptr<support::TemporaryFolder> Recognizing::spoken_;

TEST_F(Recognizing, SpokenCommandsArriveAsTheyWereGiven) {
    CommandListener listener(runtime, kCommands);
    listener.start();
    runToEnd(listener);
    EXPECT_EQ(kHeard, listener.commands());
    EXPECT_EQ(kHeard.size() + 1, listener.answers().size()) << "and one phrase is no command";
    EXPECT_THAT(listener.failures(), IsEmpty());
}

TEST_F(Recognizing, NothingArrivesAfterTheDestructor) {
    CommandListener listener(runtime, kCommands);
    listener.object().call("Destructor");
    listener.start();
    runToEnd(listener);
    EXPECT_THAT(listener.commands(), IsEmpty());
    EXPECT_EQ(1U, listener.timesBegan());
    listener.object().call("Destructor");
}

class EndingAmidListening : public Recognizing, public testing::WithParamInterface<std::size_t> {};

TEST_P(EndingAmidListening, DoesNoHarm) {
    CommandListener listener(runtime, kCommands);
    listener.start();
    EXPECT_TRUE(runtime.runUntil([&] { return listener.commands().size() >= GetParam(); }, kDeadline));
    const Texts before = listener.commands();
    listener.object() = host::Object();
    EXPECT_EQ(runtime.ledger(), host::Ledger());
    // Another one that hears all of the file.
    host::Object other = runtime.create("NSSpeechRecognizerZQM");
    other.call("startListening");
    runToEnd(listener);
    EXPECT_EQ(before, listener.commands());
    listener.object() = other; // for the listener's end
}

INSTANTIATE_TEST_SUITE_P(AfterSoManyCommands, EndingAmidListening, testing::Values(0, 1, 2));

TEST_F(Recognizing, HandlerMayChangeTheCommandsAndStop) {
    CommandListener listener(runtime, kCommands);
    Texts heard;
    listener.object().on("DidRecognizeCommand", [&](const host::Arguments& command) {
        heard.push_back(command[0].asText());
        host::Object sender = command.sender();
        sender.call("stopListening");
        if (heard.size() == 1) {
            listener.setCommands({"Music, stop! Stop the music"});
            listener.setCommands({"STOP THE MUSIC"});
            sender.call("startListening");
        }
    });
    listener.start();
    EXPECT_TRUE(runtime.runUntil([&] { return heard.size() == 2; }, kDeadline));
    EXPECT_THAT(heard, ElementsAre("OPEN the window", "STOP THE MUSIC"));
}

TEST_F(Recognizing, TwoRecognizersHearTheirOwnCommands) {
    CommandListener listener(runtime, {"open the window"});
    host::Object other = runtime.create("NSSpeechRecognizerZQM");
    Texts heard;
    other.on("DidRecognizeCommand",
             [&](const host::Arguments& command) { heard.push_back(command[0].asText()); });
    other.call("setCommands", runtime.array(host::ElementType::String, {"stop the music", "close the door"}));
    listener.start();
    other.call("startListening");
    runToEnd(listener, 2);
    EXPECT_THAT(listener.commands(), ElementsAre("open the window"));
    EXPECT_THAT(heard, ElementsAre("close the door", "stop the music"));
    other.call("stopListening");
}

TEST_F(Recognizing, KilledEngineIsReplaced) {
    CommandListener listener(runtime, kCommands);
    Texts heard;
    listener.object().on("DidRecognizeCommand", [&](const host::Arguments& command) {
        heard.push_back(command[0].asText());
        for (const pid_t engine : support::childrenOfThisProcess()) {
            kill(engine, SIGKILL);
        }
    });
    listener.start();
    runToEnd(listener);
    EXPECT_EQ(kHeard, heard);
}

TEST_F(Recognizing, FileThatIsMissingIsAFailure) {
    ZQMPlatformListenToFile("/none/phrases.wav");
    CommandListener listener(runtime, kCommands);
    listener.start();
    EXPECT_TRUE(runtime.runUntil([&] { return !listener.failures().empty(); }, kDeadline));
    EXPECT_THAT(listener.failures(), ElementsAre("/none/phrases.wav: No such file or directory"));
    EXPECT_THAT(listener.answers(), IsEmpty());
}

// ---- two programs

// Keeps the floor: its engine is held in the middle of a file.
class BlockingHost {
public:
    explicit BlockingHost(const std::filesystem::path& file)
        : process_(ZQM_LISTENING_HOST, {ZQM_PLUGIN, file.string()}) {}
    BlockingHost(const BlockingHost&) = delete;
    BlockingHost& operator=(const BlockingHost&) = delete;
    ~BlockingHost() { end(); }

    // False when it never does.
    bool waitUntilItListens() {
        const auto end = std::chrono::steady_clock::now() + kDeadline;
        while (process_.running() && std::chrono::steady_clock::now() < end) {
            std::istringstream output(process_.result().output);
            std::string line;
            if (std::getline(output, line) && !output.eof()) {
                engine_ = static_cast<pid_t>(std::stol(line));
                return true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return false;
    }

    // Of host and engine, without a word.
    void end() {
        process_.signal(SIGKILL);
        process_.waitFor(support::kProcessDeadline);
        if (engine_ > 0) {
            kill(engine_, SIGKILL);
            while (support::isAlive(engine_)) {
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
            engine_ = 0;
        }
    }

    std::string errors() const { return process_.result().errors; }

private:
    support::Process process_;
    pid_t engine_ = 0;
};

TEST_F(Recognizing, ProgramThatBlocksOthersIsHeardAlone) {
    // A folder of their own, in which these programs alone meet.
    const support::ScopedEnvironment meeting("XDG_RUNTIME_DIR", folder.path().string());
    const support::SoundFile once(phrases());
    support::Samples samples;
    for (int time = 0; time < 100; ++time) {
        samples.insert(samples.end(), once.samples.begin(), once.samples.end());
    }
    support::writeSoundFile(folder / "long.wav", samples, once.rate);

    BlockingHost blocking(folder / "long.wav");
    ASSERT_TRUE(blocking.waitUntilItListens()) << blocking.errors();
    CommandListener listener(runtime, kCommands);
    listener.start();
    runToEnd(listener);
    EXPECT_THAT(listener.answers(), IsEmpty());

    blocking.end();
    listener.stop();
    listener.start();
    runToEnd(listener, 2);
    EXPECT_EQ(kHeard, listener.commands());
}

} // namespace
} // namespace zqm::endtoend
