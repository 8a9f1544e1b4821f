#include "platform/speech_session.h"

#include "platform/ending_engines.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>

namespace zqm::platform {
namespace {

constexpr const char* kForked = "the synthesizer belongs to the process that this one was forked from";
constexpr const char* kDeaf = "the speech engine does not listen";

} // namespace

SpeechSession::~SpeechSession() {
    if (!engine_.isOurs() || !engine_.isOpen()) {
        return;
    }
    if (current() != nullptr) {
        engine_.post(protocol::Stop{current()->number});
    }
    if (!outputs_.empty()) {
        engine_.link().afterEnd(
            [outputs = std::make_shared<const Outputs>(std::move(outputs_))] { discardAll(*outputs); });
    }
}

void SpeechSession::discardAll(const Outputs& outputs) {
    for (const auto& [number, output] : outputs) {
        output.discard();
    }
}

std::uint64_t SpeechSession::start(const SpeechRequest& request, std::optional<OutputFile> output,
                                   std::string& error) {
    EndingEngines::shared().takeMessages();
    if (!engine_.isOurs()) {
        error = kForked;
        return 0;
    }
    if (request.text.empty() && !output) {
        interrupt();
        utterances_.push_back({.number = ++lastNumber_, .length = 0, .isOver = true, .completed = true});
        tellHub();
        return lastNumber_;
    }
    takeMessages();
    // An engine that served before may have died unnoticed, or hang: then a new one is tried.
    bool isUsed = engine_.isOpen();
    bool begun = false;
    do {
        begun = openEngine(error) && begin(request, output, error);
    } while (!begun && !engine_.isOpen() && std::exchange(isUsed, false) &&
             (!output || output->renew(error)));
    if (!begun) {
        if (output) {
            output->discard();
        } else if (engine_.isOpen()) {
            engine_.close(); // it may find the sound server no more, which one that begins now does
        }
        return 0;
    }
    if (output) {
        outputs_.emplace(lastNumber_, std::move(*output));
    }
    takeMessages();
    return lastNumber_;
}

bool SpeechSession::openEngine(std::string& error) {
    if (engine_.isOpen()) {
        return true;
    }
    isLexiconKnown_ = lexicon_.empty();
    return engine_.open(error);
}

void SpeechSession::tellLexicon() {
    if (!std::exchange(isLexiconKnown_, true)) {
        engine_.post(protocol::SetLexicon{lexicon_});
    }
}

// With the engine closed afterwards it failed; else it refused.
bool SpeechSession::begin(const SpeechRequest& request, const std::optional<OutputFile>& output,
                          std::string& error) {
    std::vector<protocol::Descriptor> descriptors;
    if (output) {
        auto copies = output->descriptors(error);
        if (!copies) {
            return false;
        }
        descriptors = std::move(*copies);
    }
    interrupt();
    protocol::Speak message{.utterance = ++lastNumber_,
                            .text = request.text,
                            .voice = request.voice,
                            .manner = request.manner,
                            .delimiters = request.delimiters,
                            .output = {}};
    if (output) {
        message.output = output->description();
    }
    tellLexicon();
    if (!engine_.link().send(message, std::move(descriptors), engineDeadline())) {
        return fail(kDeaf, error);
    }
    const auto deadline = engineDeadline();
    for (;;) {
        const std::optional<protocol::Event> event = await(deadline, error);
        if (!event) {
            return false;
        }
        const auto* const started = std::get_if<protocol::Started>(&*event);
        if (started == nullptr || started->utterance != lastNumber_) {
            if (!accept(*event)) {
                return fail(kEngineTalksNonsense, error);
            }
            continue;
        }
        if (!started->error.empty()) {
            error = started->error;
            return false;
        }
        utterances_.push_back({.number = lastNumber_, .length = request.length});
        return true;
    }
}

std::optional<protocol::Event> SpeechSession::await(Clock::time_point deadline, std::string& error) {
    protocol::Event event;
    switch (engine_.wait(event, deadline)) {
    case EngineLink::Input::Nothing:
        fail(kEngineIsMute, error);
        return std::nullopt;
    case EngineLink::Input::Lost:
        fail(kEngineEnded, error);
        return std::nullopt;
    case EngineLink::Input::Event:
        break;
    }
    return event;
}

bool SpeechSession::fail(const char* reason, std::string& error) {
    loseEngine(reason);
    error = reason;
    return false;
}

// What is not delivered yet comes to nobody. But what the engine had completed before the stop reached it
// ends as completed, because the sound or file is whole. A file is waited for here, so its end is told as the
// engine tells it.
void SpeechSession::stop(protocol::Boundary boundary) {
    if (!engine_.isOurs()) {
        return;
    }
    takeMessages();
    Utterance* const utterance = current();
    if (boundary != protocol::Boundary::Immediate) {
        if (utterance != nullptr) {
            utterance->isToStop = true;
            engine_.post(protocol::Stop{utterance->number, boundary});
            tellHub();
        }
        return;
    }
    for (Utterance& each : utterances_) {
        drop(each);
    }
    if (utterance != nullptr) {
        utterance->isStopped = true;
        engine_.post(protocol::Stop{utterance->number});
        awaitOutput(utterance->number);
        interrupt();
    }
    tellHub();
}

void SpeechSession::pause(protocol::Boundary boundary) {
    if (isSpeaking()) {
        engine_.post(protocol::Pause{current()->number, boundary});
    }
}

void SpeechSession::resume() {
    if (isSpeaking()) {
        Utterance& utterance = *current();
        utterance.isPaused = false;
        ++utterance.continues;
        engine_.post(protocol::Continue{utterance.number});
        tellHub();
    }
}

void SpeechSession::awaitOutput(std::uint64_t number) {
    const auto deadline = engineDeadline();
    while (outputs_.contains(number)) {
        std::string error;
        const std::optional<protocol::Event> event = await(deadline, error);
        if (event && !accept(*event)) {
            fail(kEngineTalksNonsense, error);
        }
    }
}

bool SpeechSession::isSpeaking() {
    if (!engine_.isOurs()) {
        return false;
    }
    takeMessages();
    return current() != nullptr;
}

SpeechStatus SpeechSession::status() {
    if (!isSpeaking()) {
        return {};
    }
    const Utterance& utterance = *current();
    return {.isSpeaking = true,
            .isPaused = utterance.isPaused,
            .charactersLeft = utterance.length - utterance.end,
            .phoneme = utterance.phoneme};
}

Problems SpeechSession::takeProblems() {
    takeMessages();
    return std::exchange(problems_, {});
}

std::uint32_t SpeechSession::recentSync() {
    takeMessages();
    return sync_;
}

void SpeechSession::addDictionary(protocol::LexiconDictionary dictionary) {
    lexicon_.push_back(std::move(dictionary));
    isLexiconKnown_ = false;
}

std::optional<std::string> SpeechSession::phonemes(const protocol::GetPhonemes& request, std::string& error) {
    if (!engine_.isOurs()) {
        error = kForked;
        return std::nullopt;
    }
    takeMessages();
    // As for a start.
    bool isUsed = engine_.isOpen();
    std::optional<std::string> phonemes;
    do {
        phonemes = openEngine(error) ? askPhonemes(request, error) : std::nullopt;
    } while (!phonemes && !engine_.isOpen() && std::exchange(isUsed, false));
    tellHub();
    return phonemes;
}

std::optional<std::string> SpeechSession::askPhonemes(const protocol::GetPhonemes& request,
                                                      std::string& error) {
    tellLexicon();
    const auto deadline = engineDeadline();
    if (!engine_.link().send(request, {}, deadline)) {
        fail(kDeaf, error);
        return std::nullopt;
    }
    for (;;) {
        std::optional<protocol::Event> event = await(deadline, error);
        if (!event) {
            return std::nullopt;
        }
        if (auto* const phonemes = std::get_if<protocol::Phonemes>(&*event)) {
            return std::move(phonemes->text);
        }
        if (!accept(*event)) {
            fail(kEngineTalksNonsense, error);
            return std::nullopt;
        }
    }
}

void SpeechSession::adjust(const protocol::Manner& manner) {
    if (isSpeaking()) {
        engine_.post(protocol::Adjust{current()->number, manner});
    }
}

void SpeechSession::takeMessages() {
    if (!engine_.isOurs()) {
        return;
    }
    EndingEngines::shared().takeMessages();
    const char* const failure = engine_.read([&](const protocol::Event& event) { return accept(event); });
    if (failure != nullptr) {
        loseEngine(failure);
    }
    tellHub();
}

// Whose event is the next one; null: there is none.
SpeechSession::Utterance* SpeechSession::utteranceToTell() {
    if (engine_.mayHaveMore()) {
        takeMessages();
    }
    return hasEvent() ? &utterances_.front() : nullptr;
}

SpeechEvent SpeechSession::firstEvent(const Utterance& utterance) {
    SpeechEvent event = utterance.events.isEmpty() ? SpeechEvent{.kind = SpeechEvent::Kind::Finished,
                                                                 .time = utterance.time,
                                                                 .completed = utterance.completed,
                                                                 .failure = utterance.failure}
                                                   : utterance.events.first();
    event.utterance = utterance.number;
    return event;
}

std::optional<SpeechEvent> SpeechSession::nextEvent() {
    std::optional<SpeechEvent> event;
    if (Utterance* const utterance = utteranceToTell()) {
        event = firstEvent(*utterance);
        utterance->isShown = false;
        if (event->kind == SpeechEvent::Kind::Finished) {
            utterances_.pop_front();
        } else {
            utterance->events.removeFirst();
        }
    }
    tellHub();
    return event;
}

std::optional<SpeechEvent> SpeechSession::eventToShow() {
    std::optional<SpeechEvent> event;
    Utterance* const utterance = utteranceToTell();
    if (utterance != nullptr && !std::exchange(utterance->isShown, true)) {
        event = firstEvent(*utterance);
    }
    tellHub();
    return event;
}

SpeechSession::Utterance* SpeechSession::current() {
    return utterances_.empty() || utterances_.back().isOver ? nullptr : &utterances_.back();
}

void SpeechSession::end(Utterance& utterance, bool completed) {
    utterance.isOver = true;
    utterance.completed = completed;
    tellHub();
}

// What is heard and not delivered yet; the end is none of that.
void SpeechSession::drop(Utterance& utterance) {
    if (!utterance.events.isEmpty()) {
        utterance.events.clear();
        utterance.isShown = false;
    }
}

void SpeechSession::interrupt() {
    if (Utterance* const utterance = current()) {
        drop(*utterance);
        end(*utterance, false);
    }
}

bool SpeechSession::accept(const protocol::Event& event) {
    return std::visit(
        [&]<typename Message>(const Message& message) {
            if constexpr (std::is_same_v<Message, protocol::Finished>) {
                return finish(message);
            } else if constexpr (requires(Utterance & utterance) { hear(utterance, message); }) {
                Utterance* const utterance = current();
                const bool isOfCurrent = utterance != nullptr && message.utterance == utterance->number;
                // Of others it was said before the engine heard of their end.
                return isOfCurrent ? hear(*utterance, message) : message.utterance <= lastNumber_;
            } else {
                return false; // it is not said without being asked for
            }
        },
        event);
}

template <typename Message>
void SpeechSession::keep(Utterance& utterance, const Message& message) {
    if (!utterance.isStopped) {
        utterance.time = std::max(utterance.time, message.at);
        utterance.events.add(message);
    }
}

bool SpeechSession::hear(Utterance& utterance, const protocol::Word& word) {
    const bool isWord = word.length > 0 && word.position >= utterance.floor &&
                        word.position <= utterance.length &&
                        word.length <= utterance.length - word.position &&
                        utterance.length <= std::numeric_limits<std::uint32_t>::max();
    if (!isWord) {
        return utterance.isStopped;
    }
    utterance.begin = word.position;
    utterance.end = word.position + word.length;
    utterance.floor = utterance.end;
    keep(utterance, word);
    return true;
}

bool SpeechSession::hear(Utterance& utterance, const protocol::Phoneme& phoneme) {
    utterance.phoneme = phoneme.opcode;
    keep(utterance, phoneme);
    return true;
}

bool SpeechSession::hear(Utterance& utterance, const protocol::Problem& problem) {
    if (problem.position > utterance.length) {
        return false;
    }
    const Problems::Place place{problem.code, problem.position};
    if (problems_.count++ == 0) {
        problems_.oldest = place;
    }
    problems_.newest = place;
    keep(utterance, problem);
    return true;
}

bool SpeechSession::hear(Utterance& utterance, const protocol::Sync& sync) {
    sync_ = sync.message;
    keep(utterance, sync);
    return true;
}

// A pause that was continued since lies behind. The word that was cut is told again.
bool SpeechSession::hear(Utterance& utterance, const protocol::Paused&) {
    utterance.isPaused = utterance.continues == 0;
    utterance.floor = utterance.begin;
    return true;
}

bool SpeechSession::hear(Utterance& utterance, const protocol::Continued&) {
    if (utterance.continues == 0) {
        return false;
    }
    --utterance.continues;
    return true;
}

bool SpeechSession::finish(const protocol::Finished& finished) {
    if (finished.utterance > lastNumber_) {
        return false;
    }
    if (const auto output = outputs_.find(finished.utterance); output != outputs_.end()) {
        if (!finished.completed) {
            output->second.discard(); // of a speech that was stopped the file is in its place
        }
        outputs_.erase(output);
    }
    Utterance* const utterance = current();
    if (utterance != nullptr && finished.utterance == utterance->number) {
        utterance->time = finished.at;
        end(*utterance, finished.completed);
        utterance->failure = finished.error;
    }
    return true;
}

void SpeechSession::loseEngine(const char* reason) {
    engine_.lose();
    discardAll(outputs_);
    outputs_.clear();
    if (Utterance* const utterance = current()) {
        utterance->failure = reason;
        end(*utterance, false);
    }
}

bool SpeechSession::hasEvent() const {
    return !utterances_.empty() && (utterances_.front().isOver || !utterances_.front().events.isEmpty());
}

// In a pause nothing is to come, unless the engine was asked to end it.
void SpeechSession::tellHub() {
    const Utterance* const utterance = current();
    engine_.supervise(utterance != nullptr && (!utterance->isPaused || utterance->isToStop));
    engine_.tellHub(hasEvent());
}

} // namespace zqm::platform
