// The engine: takes the requests of one host, speaks and listens.

#pragma once

#include "engine/event_loop.h"
#include "engine/listening/listening.h"
#include "engine/output/file_placer.h"
#include "engine/protocol/channel.h"
#include "engine/protocol/protocol.h"
#include "engine/sound_server.h"
#include "engine/speaker/speaker.h"
#include "engine/utterance.h"

#include <optional>
#include <vector>

namespace zqm::engine {

// Exit codes of the program.
inline constexpr int kExitOk = 0;
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 2;
inline constexpr int kExitBadConversation = 3;

class Engine {
public:
    // Throws std::runtime_error when espeak-ng can't be used. The placer outlives this.
    Engine(protocol::Descriptor socket, const FilePlacer& placer);

    // Works until the host ends the conversation, or itself. Answers the exit code.
    int run();

private:
    void watchHost();
    void readLexicon();
    void readRequests();
    void flush();

    void handle(const protocol::ListVoices& request);
    void handle(protocol::Speak& request);
    void handle(const protocol::Stop& request);
    void handle(const protocol::Pause& request);
    void handle(const protocol::Continue& request);
    void handle(const protocol::Adjust& request);
    void handle(protocol::SetLexicon& request);
    void handle(const protocol::GetPhonemes& request);
    void handle(const protocol::Ping& request);
    void handle(protocol::SetCommands& request);
    void handle(const protocol::Listen& request);
    void handle(const protocol::BlockOthers& request);
    void handle(const protocol::StopListening& request);

    [[nodiscard]] std::chrono::microseconds idleTime() const;
    [[nodiscard]] bool isSpeaking(std::uint64_t utterance) const;
    void dropIfOver();
    void report(const protocol::Event& event, bool moreFollow = false);
    void quit(int exitCode);
    void fail(const char* reason, int exitCode);
    void refuse(const char* reason);

    protocol::Channel channel_;
    const FilePlacer& placer_;
    protocol::Descriptor signals_; // before the speaker: espeak-ng starts a thread, which inherits the mask
    EventLoop loop_;
    SoundServer server_;
    Speaker speaker_;
    std::vector<protocol::Descriptor> hosts_; // processes
    std::optional<int> exitCode_;
    std::optional<protocol::SetLexicon> lexicon_; // not read yet: the next voice that is used says how
    std::vector<LexiconProblem> lexiconProblems_; // to be told with the next utterance
    std::uint64_t lastUtterance_ = 0;
    std::optional<Utterance> utterance_;
    Listening listening_;
};

} // namespace zqm::engine
