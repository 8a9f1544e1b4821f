// The speech of one synthesizer: an engine of its own, the utterance being spoken, and what was heard of it
// and not yet delivered.

#pragma once

#include "engine/protocol.h"
#include "platform/deadline.h"
#include "platform/engine_link.h"
#include "platform/event_hub.h"
#include "platform/output_file.h"
#include "platform/process_identity.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace zqm::platform {

// One thing to be told to the delegate.
struct SpeechEvent {
    enum class Kind : std::uint8_t { Word, Finished };

    std::uint64_t utterance = 0;
    Kind kind = Kind::Word;
    std::size_t position = 0; // of the word, in UTF-16 units
    std::size_t length = 0;
    bool completed = false; // of the finish
};

struct SpeechRequest {
    std::string text;       // UTF-8
    std::size_t length = 0; // UTF-16 units
    std::string voice;
    protocol::Manner manner{};
    protocol::Delimiters delimiters{};
};

class SpeechSession {
public:
    // The source is what the hub is told to call; it outlives the session.
    explicit SpeechSession(EventSource* source) : source_(source) {}
    SpeechSession(const SpeechSession&) = delete;
    SpeechSession& operator=(const SpeechSession&) = delete;

    // Stops what is spoken, closes the engine and waits for nothing.
    ~SpeechSession();

    // Begins an utterance, ending the one being spoken. Its number; 0: it did not begin, and `error` says
    // why. An utterance that was being spoken is only ended once an engine is there for the new one.
    std::uint64_t start(const SpeechRequest& request, std::optional<OutputFile> output, std::string& error);

    // Nothing but the ends is delivered of the utterances begun so far, and of one that the engine had
    // completed that it is completed. A file that was being written is whole and in its place when this
    // returns.
    void stop();

    // From a successful start to the end of the sound or file.
    bool isSpeaking();

    void setRate(double rate);
    void setVolume(double volume);

    // Reads what has come.
    void takeMessages();

    // The next event to be delivered, in order.
    std::optional<SpeechEvent> nextEvent();

    // Why the last utterance that failed did; told once, empty when none did.
    std::string takeFailure();

private:
    struct Word {
        std::uint32_t position;
        std::uint32_t length;
    };
    struct Utterance {
        std::uint64_t number;
        std::size_t length;
        std::deque<Word> words;
        std::size_t end = 0;    // of the last word heard
        bool isStopped = false; // its words are of no interest any more
        bool isOver = false;
        bool completed = false;
    };

    Utterance* current();
    bool openLink(std::string& error);
    bool begin(const SpeechRequest& request, const std::optional<OutputFile>& output, std::string& error);
    void end(Utterance& utterance, bool completed);
    void interrupt();
    void adjust(const protocol::Manner& manner);
    bool accept(const protocol::Event& event);
    bool accept(const protocol::Word& word);
    bool accept(const protocol::Finished& finished);
    // The next message; nothing when the engine failed, and `error` then says how.
    std::optional<protocol::Event> await(Clock::time_point deadline, std::string& error);
    void awaitOutput(std::uint64_t number);
    bool fail(const char* reason, std::string& error);
    void loseEngine(const char* reason);
    [[nodiscard]] bool hasEvent() const;
    void tellHub();

    EventSource* source_;
    ProcessIdentity owner_;
    std::unique_ptr<EngineLink> link_;
    std::uint64_t lastNumber_ = 0;
    std::deque<Utterance> utterances_;            // not delivered to their end; only the last may be spoken
    std::map<std::uint64_t, OutputFile> outputs_; // being written
    std::string failure_;
    bool mayHaveMore_ = false; // the engine said more than was read at one go
};

} // namespace zqm::platform
