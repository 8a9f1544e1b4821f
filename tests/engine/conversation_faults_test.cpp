// Hosts that end, or say what is no request, at every request of a conversation.

#include "engine/protocol/temporary_name.h"
#include "tests/engine/engine_process.h"
#include "tests/engine/listening_files.h"
#include "tests/support/garbage_lines.h"
#include "tests/support/process_table.h"
#include "tests/support/temporary_folder.h"

#include <chrono>
#include <fcntl.h>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sndfile.h>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

using namespace zqm::protocol;
using namespace zqm::support;
using namespace zqm::test;

namespace {

constexpr int kBadConversation = 3;
constexpr int kListeningRate = 16'000;

// Where every access to memory is checked, an engine takes long to start.
#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t kGarbageStep = 3;
#else
constexpr std::size_t kGarbageStep = 1;
#endif

struct Step {
    Request request;
    std::vector<Descriptor> descriptors{};
};

// Until it has nothing to do; false: it never has.
bool restsAtLast(pid_t process) {
    constexpr int kOften = 5;
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(EngineProcess::kDeadlineMilliseconds);
    for (int times = 0; times < kOften;) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        times = stateOf(process) == 'S' ? times + 1 : 0;
    }
    return true;
}

class ConversationFault : public testing::Test {
protected:
    // What a host may say, each with what it needs.
    std::vector<Step> speaking() {
        std::vector<Step> steps;
        const auto add = [&](Request request, std::vector<Descriptor> descriptors = {}) {
            steps.push_back({std::move(request), std::move(descriptors)});
        };
        const auto addSpeech = [&](std::uint64_t utterance) {
            Target target(folder_.path(), std::to_string(++files_) + ".wav");
            Speak request = speak(utterance, "One two three.");
            request.output = target.output;
            add(std::move(request), std::move(target.descriptors));
        };
        add(ListVoices{});
        add(SetLexicon{{{"en_US", "2026-01-01 00:00:00 +0000", {{"zqm", "dAOg"}}, {}}}});
        add(GetPhonemes{"zqm", "gmw/en-US", {}});
        addSpeech(1);
        add(Adjust{1, {.rate = 200}});
        add(Pause{1});
        add(Continue{1});
        addSpeech(2);
        add(Stop{2});
        add(GetPhonemes{"dog", "gmw/en-US", {}});
        return steps;
    }

    std::vector<Step> listening() {
        const auto file = folder_ / "spoken.wav";
        writeSoundFile(file, recordedCommand(), {SF_FORMAT_WAV | SF_FORMAT_PCM_16, kListeningRate});
        std::vector<Step> steps;
        steps.push_back({SetCommands{1, {"stop"}}});
        steps.push_back({Listen{1, true, true}});
        steps.back().descriptors.emplace_back(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
        steps.push_back({SetCommands{2, {kRecordedCommand}}});
        steps.push_back({StopListening{1}});
        return steps;
    }

    // At each of the requests of a conversation: those before it are said, then the host does something else,
    // with that one's line at hand, and the engine ends with the code.
    void atEach(const std::function<std::vector<Step>()>& conversation, int code,
                const std::function<void(EngineProcess&, const std::string&)>& fault, std::size_t step = 1) {
        for (std::size_t place = 0, count = 1; place < count; place += step) {
            std::vector<Step> steps = conversation();
            count = steps.size();
            const std::string line = encode(steps[place].request);
            SCOPED_TRACE("instead of request " + std::to_string(place) + ": " + line);
            EngineProcess engine;
            for (std::size_t index = 0; index < place; ++index) {
                engine.queue(steps[index].request, std::move(steps[index].descriptors));
            }
            engine.flush();
            fault(engine, line);
            while (code != 0 && engine.next()) {
                // what it still says of the requests
            }
            EXPECT_EQ(engine.wait(), code);
            expectOneLineAtMost(engine.errors(), code);
            steps.clear();
            expectNothingTemporary();
        }
    }

    void atEachOfAll(int code, const std::function<void(EngineProcess&, const std::string&)>& fault) {
        atEach([this] { return speaking(); }, code, fault);
        atEach([this] { return listening(); }, code, fault);
    }

private:
    static void expectOneLineAtMost(const std::string& errors, int code) {
        if (code == 0) {
            EXPECT_EQ(errors, "");
        } else {
            EXPECT_THAT(errors, testing::StartsWith("zqmspeech-engine: "));
            EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
        }
    }

    // Those of requests that never came to the engine are this host's own.
    void expectNothingTemporary() {
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
            const bool isTemporary = isTemporaryName(entry.path().filename().string());
            EXPECT_TRUE(!isTemporary || std::filesystem::file_size(entry.path()) == 0) << entry.path();
            std::filesystem::remove(entry.path());
        }
    }

    TemporaryFolder folder_;
    int files_ = 0;
};

TEST_F(ConversationFault, AHostThatHangsUpEndsIt) {
    atEachOfAll(0, [](EngineProcess& engine, const std::string&) { engine.hangUp(); });
}

TEST_F(ConversationFault, ARequestThatIsCutOffIsNone) {
    atEachOfAll(0, [](EngineProcess& engine, const std::string& line) {
        engine.sendRaw(std::string_view(line).substr(0, line.size() / 2));
        engine.hangUp();
    });
}

TEST_F(ConversationFault, TheRestOfARequestIsWaitedForInRest) {
    atEach([this] { return speaking(); }, 0,
           [](EngineProcess& engine, const std::string& line) {
               engine.sendRaw(std::string_view(line).substr(0, line.size() / 2));
               EXPECT_TRUE(restsAtLast(engine.pid()));
               engine.hangUp();
           });
}

TEST_F(ConversationFault, ALongLineOfNothingEndsIt) {
    constexpr std::size_t kLong = std::size_t{8} << 20;
    atEach([this] { return speaking(); }, kBadConversation,
           [](EngineProcess& engine, const std::string&) { engine.sendRaw(std::string(kLong, 'x') + "\n"); });
}

class GarbageInConversation : public ConversationFault, public testing::WithParamInterface<GarbageLine> {};

TEST_P(GarbageInConversation, EndsIt) {
    atEach([this] { return speaking(); }, kBadConversation,
           [](EngineProcess& engine, const std::string&) { engine.sendRaw(GetParam().line + "\n"); },
           kGarbageStep);
}

INSTANTIATE_TEST_SUITE_P(All, GarbageInConversation, testing::ValuesIn(garbageRequests()),
                         [](const auto& each) { return each.param.name; });

TEST_F(ConversationFault, GarbageEndsListeningToo) {
    atEach([this] { return listening(); }, kBadConversation,
           [](EngineProcess& engine, const std::string&) { engine.sendRaw("garbage\n"); });
}

} // namespace
