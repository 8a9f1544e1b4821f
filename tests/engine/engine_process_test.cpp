#include "tests/engine/engine_process.h"

#include "tests/support/eventually.h"
#include "tests/support/process.h"
#include "tests/support/process_table.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <string>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace zqm::protocol;
using namespace zqm::support;
using namespace zqm::test;
using testing::AllOf;
using testing::HasSubstr;

namespace {

constexpr int kBadConversation = 3;

// To be spoken without end, as far as tests are concerned.
std::string longText() {
    std::string text;
    for (int count = 0; count < 400'000; ++count) {
        text += "word ";
    }
    return text;
}

// ---- by hand

TEST(EngineProgram, startedByHandSaysSoInOneLine) {
    const ProcessResult result = runProcess(ZQM_ENGINE, {});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1);
    EXPECT_THAT(result.errors, HasSubstr("zqmspeech-engine: "));
}

TEST(EngineProgram, knowsThreeOptions) {
    EXPECT_THAT(runProcess(ZQM_ENGINE, {"--version"}).output, HasSubstr("zqmspeech-engine "));
    EXPECT_EQ(runProcess(ZQM_ENGINE, {"--version"}).exitCode, 0);
    EXPECT_THAT(runProcess(ZQM_ENGINE, {"--help"}).output, HasSubstr("--version"));
    EXPECT_EQ(runProcess(ZQM_ENGINE, {"--help"}).exitCode, 0);
    EXPECT_THAT(runProcess(ZQM_ENGINE, {"--confinement"}).output,
                AllOf(HasSubstr("files: "), HasSubstr("calls: ")));
    EXPECT_EQ(runProcess(ZQM_ENGINE, {"--confinement"}).exitCode, 0);
    EXPECT_EQ(runProcess(ZQM_ENGINE, {"--nonsense"}).exitCode, 2);
}

TEST(EngineProgram, refusesADescriptorThatIsNoSocket) {
    const Descriptor null(::open("/dev/null", O_RDWR | O_CLOEXEC));
    const pid_t pid = spawnEngine(null.get(), null.get());
    int status = 0;
    ASSERT_EQ(::waitpid(pid, &status, 0), pid);
    EXPECT_EQ(WEXITSTATUS(status), 2);
}

// ---- voices

TEST(EngineProgram, listsItsVoicesInAStableOrder) {
    EngineProcess engine;
    engine.send(ListVoices{});
    engine.send(ListVoices{});
    const auto first = std::get<Voices>(*engine.next());
    EXPECT_EQ(std::get<Voices>(*engine.next()), first);
    EXPECT_GT(first.voices.size(), 50U);
    const auto voice = std::find_if(first.voices.begin(), first.voices.end(), [](const Voice& candidate) {
        return candidate.identifier == "gmw/en-US";
    });
    ASSERT_NE(voice, first.voices.end());
    EXPECT_EQ(voice->name, "English (America)");
    EXPECT_EQ(voice->language, "en-US");
    EXPECT_EQ(voice->gender, "male");
    for (const Voice& other : first.voices) {
        EXPECT_FALSE(other.identifier.starts_with("mb/")) << other.identifier;
        EXPECT_FALSE(other.language.empty());
        EXPECT_EQ(std::count_if(first.voices.begin(), first.voices.end(),
                                [&](const Voice& twin) { return twin.identifier == other.identifier; }),
                  1)
            << other.identifier;
    }
}

TEST(EngineProgram, speaksWithEachOfItsVoices) {
    EngineProcess engine;
    engine.send(ListVoices{});
    const auto list = std::get<Voices>(*engine.next());
    std::uint64_t utterance = 0;
    for (const Voice& voice : list.voices) {
        Speak request = speak(++utterance, "1 2 3");
        request.voice = voice.identifier;
        request.output = Output{"flac", "", ""};
        std::vector<Descriptor> null;
        null.emplace_back(::open("/dev/null", O_WRONLY | O_CLOEXEC));
        engine.send(request, std::move(null));
        const std::vector<Event> events = engine.untilEnd(utterance);
        EXPECT_THAT(faults(events, utterance), testing::IsEmpty()) << voice.identifier;
        EXPECT_EQ(wordsIn(events).size(), 3U) << voice.identifier;
    }
}

// ---- pings

TEST(EngineProgram, answersPingsWhileItDoesNothingAndWhileItSpeaks) {
    EngineProcess engine;
    engine.send(Ping{});
    EXPECT_TRUE(std::holds_alternative<Pong>(*engine.next()));
    const TemporaryFolder folder;
    Target target(folder.path(), "a.wav");
    Speak request = speak(1, longText());
    request.output = target.output;
    engine.send(request, std::move(target.descriptors));
    engine.send(Ping{});
    engine.send(Ping{});
    int answers = 0;
    while (answers < 2) {
        const auto event = engine.next();
        ASSERT_TRUE(event && !std::holds_alternative<Finished>(*event));
        answers += std::holds_alternative<Pong>(*event) ? 1 : 0;
    }
}

// ---- the end

class EngineEnd : public testing::Test {
protected:
    // Has an endless file written.
    void begin(EngineProcess& engine) {
        Speak request = speak(1, longText());
        request.output = target.output;
        engine.send(request, std::move(target.descriptors));
        engine.flush();
        ASSERT_TRUE(std::holds_alternative<Started>(*engine.next()));
        ASSERT_TRUE(std::filesystem::exists(target.temporary));
    }

    void expectNothingLeft() const {
        EXPECT_FALSE(std::filesystem::exists(target.temporary));
        EXPECT_FALSE(std::filesystem::exists(target.file));
    }

    TemporaryFolder folder;
    Target target{folder.path(), "a.wav"};
};

TEST_F(EngineEnd, comesQuietlyWithTheEndOfTheConversation) {
    EngineProcess engine;
    engine.hangUp();
    EXPECT_EQ(engine.wait(), 0);
    EXPECT_EQ(engine.errors(), "");
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// libespeak-ng has something to say of this voice.
TEST_F(EngineEnd, isNotMixedWithComplaintsOfLibraries) {
    EngineProcess engine;
    Speak request = speak(1, "Hello.");
    request.voice = "zle/be";
    request.output = target.output;
    engine.send(request, std::move(target.descriptors));
    EXPECT_THAT(faults(engine.untilEnd(1), 1), testing::IsEmpty());
    engine.sendRaw("garbage\n");
    EXPECT_EQ(engine.wait(), kBadConversation);
    const std::string errors = engine.errors();
    EXPECT_THAT(errors, testing::StartsWith("zqmspeech-engine: "));
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1);
}
#endif

TEST_F(EngineEnd, inTheMiddleOfAFileRemovesIt) {
    EngineProcess engine;
    begin(engine);
    engine.hangUp();
    EXPECT_EQ(engine.wait(), 0);
    EXPECT_EQ(engine.errors(), "");
    expectNothingLeft();
}

TEST_F(EngineEnd, byAPoliteSignalRemovesTheFileToo) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        EngineProcess engine;
        Target fresh(folder.path(), "b" + std::to_string(number) + ".wav");
        std::swap(target, fresh);
        begin(engine);
        ::kill(engine.pid(), number);
        EXPECT_EQ(engine.wait(), 0);
        expectNothingLeft();
    }
}

const std::vector<std::string> kGarbage{
    "garbage\n",
    "\n",
    "{}\n",
    "{\"type\":\"stop\"}\n",
    "{\"type\":\"word\",\"utterance\":1,\"position\":0,\"length\":1}\n",
    std::string("\0\0\0\0\n", 5),
    "\xFF\xFE\n",
    // descriptors are missing
    (R"({"type":"speak","utterance":1,"text":"a","voice":"gmw/en","manner":{},"delimiters":{"prefix":"","suffix":""},"output":)"
     R"({"extension":"wav","temporaryName":"t","finalName":"f"}})"
     "\n"),
    (R"({"type":"listen","session":1,"reportsLevel":false,"fromFile":true})"
     "\n"),
};

class Garbage : public testing::TestWithParam<std::string> {};

TEST_P(Garbage, endsTheConversation) {
    EngineProcess engine;
    engine.sendRaw(GetParam());
    EXPECT_FALSE(engine.next());
    EXPECT_EQ(engine.wait(), kBadConversation);
    const std::string errors = engine.errors();
    EXPECT_THAT(errors, HasSubstr("zqmspeech-engine: "));
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1);
}

INSTANTIATE_TEST_SUITE_P(Lines, Garbage, testing::ValuesIn(kGarbage));

TEST_F(EngineEnd, byGarbageRemovesTheFileToo) {
    EngineProcess engine;
    begin(engine);
    engine.sendRaw("garbage\n");
    EXPECT_EQ(engine.wait(), kBadConversation);
    expectNothingLeft();
}

TEST_F(EngineEnd, forWantOfADescriptorSaysSo) {
    // The search for leaks at the end of a program needs descriptors, too.
    const char* const options = std::getenv("ASAN_OPTIONS"); // NOLINT(concurrency-mt-unsafe)
    const ScopedEnvironment without("ASAN_OPTIONS",
                                    (options != nullptr ? options : "") + std::string(":detect_leaks=0"));
    EngineProcess engine;
    engine.send(Ping{});
    ASSERT_TRUE(std::holds_alternative<Pong>(*engine.next()));
    const rlimit none{0, 0};
    ASSERT_EQ(::prlimit(engine.pid(), RLIMIT_NOFILE, &none, nullptr), 0);
    Speak request = speak(1, "Hi");
    request.output = target.output;
    engine.send(request, std::move(target.descriptors));
    EXPECT_FALSE(engine.next());
    EXPECT_EQ(engine.wait(), kBadConversation);
    EXPECT_EQ(engine.errors(), "zqmspeech-engine: Too many open files\n");
}

// It takes minutes, in which nothing is read.
TEST_F(EngineEnd, comesSoonThoughItPreparesCommands) {
    std::vector<std::string> commands;
    for (int number = 10'000; number < 30'000; ++number) {
        commands.push_back("say the number " + std::to_string(number));
    }
    EngineProcess engine;
    engine.send(SetCommands{1, commands});
    constexpr double kSecondsAtWork = 1; // it has read the request
    ASSERT_TRUE(eventually([&] {
        engine.flush();
        return processorSecondsOf(engine.pid()) > kSecondsAtWork;
    }));
    engine.hangUp();
    EXPECT_EQ(engine.wait(), 1000 + SIGALRM);
    EXPECT_EQ(engine.errors(), "");
}

// A child of the test is the host. It starts an engine, and a fork of itself that keeps the socket open.
TEST_F(EngineEnd, comesWithTheEndOfItsParentThoughAForkHoldsTheSocket) {
    std::array<int, 2> report{};
    std::array<int, 2> command{};
    ASSERT_EQ(::pipe2(report.data(), O_CLOEXEC), 0);
    ASSERT_EQ(::pipe2(command.data(), O_CLOEXEC), 0);
    const pid_t host = ::fork();
    ASSERT_GE(host, 0);
    if (host == 0) {
        auto [ours, theirs] = socketPair();
        std::array<pid_t, 2> pids{};
        pids[0] = spawnEngine(theirs.get(), -1);
        theirs.reset();
        pids[1] = ::fork();
        if (pids[1] == 0) {
            for (;;) {
                ::pause();
            }
        }
        char byte = 0;
        const bool told = ::write(report[1], pids.data(), sizeof pids) == sizeof pids;
        const bool asked = ::read(command[0], &byte, 1) == 1;
        ::_exit(told && asked ? 0 : 1);
    }
    std::array<pid_t, 2> pids{};
    ASSERT_EQ(::read(report[0], pids.data(), sizeof pids), static_cast<ssize_t>(sizeof pids));
    const auto [engine, fork] = pids;
    const Descriptor watched(static_cast<int>(::syscall(SYS_pidfd_open, engine, 0)));
    ASSERT_TRUE(watched);
    pollfd poll{watched.get(), POLLIN, 0};
    EXPECT_EQ(::poll(&poll, 1, 0), 0) << "the engine ended before its host did";
    ASSERT_EQ(::write(command[1], "x", 1), 1);
    int status = 0;
    ASSERT_EQ(::waitpid(host, &status, 0), host);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(::poll(&poll, 1, EngineProcess::kDeadlineMilliseconds), 1) << "the engine outlives its host";
    EXPECT_EQ(::kill(fork, SIGKILL), 0);
    for (const int end : {report[0], report[1], command[0], command[1]}) {
        ::close(end);
    }
}

} // namespace
