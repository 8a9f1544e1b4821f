// The speech of one synthesizer: an engine of its own, the utterance being spoken, and what was heard of it
// and not yet delivered.

#pragma once

#include "engine/protocol/protocol.h"
#include "platform/deadline.h"
#include "platform/event_hub.h"
#include "platform/event_queue.h"
#include "platform/output_file.h"
#include "platform/own_engine.h"
#include "platform/speech_event.h"

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace zqm::platform {

// How things stand with an utterance, as far as it was heard.
struct SpeechStatus {
    bool isSpeaking = false; // paused or not
    bool isPaused = false;
    std::size_t charactersLeft = 0; // UTF-16 units behind the last word heard
    int phoneme = 0;                // opcode of the last one heard
};

// The mistakes met in texts.
struct Problems {
    struct Place {
        int code = 0;
        std::size_t position = 0;
    };
    std::size_t count = 0;
    Place oldest;
    Place newest;
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
    explicit SpeechSession(EventSource* source) : engine_(source) {}
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
    // At a later boundary all is delivered up to there, and the utterance may still be spoken when this
    // returns.
    void stop(protocol::Boundary boundary = protocol::Boundary::Immediate);

    // Holds the utterance being spoken at the boundary.
    void pause(protocol::Boundary boundary);
    // Goes on with it, where it was or is still to be held.
    void resume();

    // From a successful start to the end of the sound or file.
    bool isSpeaking();

    SpeechStatus status();
    // Those heard of since they were taken last.
    Problems takeProblems();
    // The last one heard of; 0: none.
    std::uint32_t recentSync();

    // Changes the rest of the utterance being spoken.
    void adjust(const protocol::Manner& manner);

    // For the utterances to come.
    void addDictionary(protocol::LexiconDictionary dictionary);

    // Nothing when no engine answers, and `error` says why.
    std::optional<std::string> phonemes(const protocol::GetPhonemes& request, std::string& error);

    // Reads what has come.
    void takeMessages();

    // The next event to be delivered, in order.
    std::optional<SpeechEvent> nextEvent();

    // The same for somebody who sees each of them first; nothing when it was shown already.
    std::optional<SpeechEvent> eventToShow();

private:
    struct Utterance {
        std::uint64_t number;
        std::size_t length;
        EventQueue events{};
        bool isShown = false;  // the first event that is to be delivered
        std::size_t begin = 0; // of the last word heard
        std::size_t end = 0;
        std::size_t floor = 0; // no word comes from before
        int phoneme = 0;       // the last one heard
        double time = 0;       // up to where it was heard, in seconds
        bool isPaused = false;
        std::uint64_t continues = 0; // not answered yet
        bool isToStop = false;       // at a boundary
        bool isStopped = false;      // what is heard of it is of no interest any more
        bool isOver = false;
        bool completed = false;
        std::string failure{}; // why it ended early; empty when it was only asked to, or didn't
    };

    using Outputs = std::map<std::uint64_t, OutputFile>;

    Utterance* current();
    static void discardAll(const Outputs& outputs);
    bool openEngine(std::string& error);
    void tellLexicon();
    bool begin(const SpeechRequest& request, const std::optional<OutputFile>& output, std::string& error);
    template <typename Message>
    static void keep(Utterance& utterance, const Message& message);
    static void drop(Utterance& utterance);
    void end(Utterance& utterance, bool completed);
    void interrupt();
    // What the engine says unasked; false when it makes no sense.
    bool accept(const protocol::Event& event);
    bool hear(Utterance& utterance, const protocol::Word& word);
    bool hear(Utterance& utterance, const protocol::Phoneme& phoneme);
    bool hear(Utterance& utterance, const protocol::Problem& problem);
    bool hear(Utterance& utterance, const protocol::Sync& sync);
    bool hear(Utterance& utterance, const protocol::Paused& paused);
    bool hear(Utterance& utterance, const protocol::Continued& continued);
    bool finish(const protocol::Finished& finished);
    // The next message; nothing when the engine failed, and `error` then says how.
    std::optional<protocol::Event> await(Clock::time_point deadline, std::string& error);
    void awaitOutput(std::uint64_t number);
    std::optional<std::string> askPhonemes(const protocol::GetPhonemes& request, std::string& error);
    bool fail(const char* reason, std::string& error);
    void loseEngine(const char* reason);
    [[nodiscard]] bool hasEvent() const;
    Utterance* utteranceToTell();
    static SpeechEvent firstEvent(const Utterance& utterance);
    void tellHub();

    OwnEngine engine_;
    std::uint64_t lastNumber_ = 0;
    std::deque<Utterance> utterances_; // not delivered to their end; only the last may be spoken
    Outputs outputs_;                  // being written
    std::vector<protocol::LexiconDictionary> lexicon_;
    bool isLexiconKnown_ = true; // to the engine, which is told when it is needed: once for all added
    Problems problems_;
    std::uint32_t sync_ = 0;
};

} // namespace zqm::platform
