#include "platform/speech_session.h"

#include <limits>
#include <utility>

namespace zqm::platform {
namespace {

// Read at one go; what is beyond is read in the next round of the run loop.
constexpr int kMostMessages = 100'000;

constexpr const char* kDeaf = "the speech engine does not listen";
constexpr const char* kMute = "the speech engine does not answer";
constexpr const char* kEnded = "the speech engine ended unexpectedly";
constexpr const char* kNonsense = "the speech engine said something that makes no sense";

} // namespace

SpeechSession::~SpeechSession() {
    if (!owner_.isCurrent()) {
        return; // the engine is the parent's
    }
    if (link_ && current() != nullptr) {
        link_->post(protocol::Stop{current()->number});
    }
    if (link_) {
        EventHub::shared().unwatch(link_->descriptor());
    }
    EventHub::shared().remove(source_);
}

std::uint64_t SpeechSession::start(const SpeechRequest& request, std::optional<OutputFile> output,
                                   std::string& error) {
    reapEngines();
    if (!owner_.isCurrent()) {
        error = "the synthesizer belongs to the process that this one was forked from";
        return 0;
    }
    if (request.text.empty() && !output) {
        interrupt();
        utterances_.push_back(
            {.number = ++lastNumber_, .length = 0, .words = {}, .isOver = true, .completed = true});
        tellHub();
        return lastNumber_;
    }
    takeMessages();
    // An engine that served before may have died unnoticed, or hang: then a new one is tried.
    bool isUsed = link_ != nullptr;
    bool begun = false;
    do {
        begun = openLink(error) && begin(request, output, error);
    } while (!begun && link_ == nullptr && std::exchange(isUsed, false));
    if (!begun) {
        if (output) {
            output->discard();
        }
        return 0;
    }
    if (output) {
        outputs_.emplace(lastNumber_, std::move(*output));
    }
    takeMessages();
    return lastNumber_;
}

bool SpeechSession::openLink(std::string& error) {
    if (link_) {
        return true;
    }
    link_ = EngineLink::open(error);
    if (link_ && !EventHub::shared().watch(link_->descriptor(), source_)) {
        error = "the system can't watch another engine";
        link_.reset();
    }
    return link_ != nullptr;
}

// With `link_` null afterwards the engine failed; else it refused.
bool SpeechSession::begin(const SpeechRequest& request, const std::optional<OutputFile>& output,
                          std::string& error) {
    interrupt();
    protocol::Speak message{.utterance = ++lastNumber_,
                            .text = request.text,
                            .voice = request.voice,
                            .manner = request.manner,
                            .delimiters = request.delimiters,
                            .output = {}};
    std::vector<protocol::Descriptor> descriptors;
    if (output) {
        message.output = output->description();
        descriptors = output->descriptors();
    }
    if (!link_->send(message, std::move(descriptors), engineDeadline())) {
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
                return fail(kNonsense, error);
            }
            continue;
        }
        if (!started->error.empty()) {
            error = started->error;
            return false;
        }
        utterances_.push_back({.number = lastNumber_, .length = request.length, .words = {}});
        return true;
    }
}

std::optional<protocol::Event> SpeechSession::await(Clock::time_point deadline, std::string& error) {
    protocol::Event event;
    switch (link_->wait(event, deadline)) {
    case EngineLink::Input::Nothing:
        fail(kMute, error);
        return std::nullopt;
    case EngineLink::Input::Lost:
        fail(kEnded, error);
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

// Words that are not delivered yet come to nobody. But what the engine had completed before the stop reached
// it ends as completed, because the sound or file is whole. A file is waited for here, so its end is told as
// the engine tells it.
void SpeechSession::stop() {
    if (!owner_.isCurrent()) {
        return;
    }
    takeMessages();
    for (Utterance& utterance : utterances_) {
        utterance.words.clear();
    }
    if (Utterance* const utterance = current()) {
        utterance->isStopped = true;
        link_->post(protocol::Stop{utterance->number});
        awaitOutput(utterance->number);
        interrupt();
    }
    tellHub();
}

void SpeechSession::awaitOutput(std::uint64_t number) {
    const auto deadline = engineDeadline();
    while (outputs_.contains(number)) {
        std::string error;
        const std::optional<protocol::Event> event = await(deadline, error);
        if (event && !accept(*event)) {
            fail(kNonsense, error);
        }
    }
}

bool SpeechSession::isSpeaking() {
    if (!owner_.isCurrent()) {
        return false;
    }
    takeMessages();
    return current() != nullptr;
}

void SpeechSession::setRate(double rate) {
    adjust({.rate = rate});
}

void SpeechSession::setVolume(double volume) {
    adjust({.volume = volume});
}

void SpeechSession::adjust(const protocol::Manner& manner) {
    if (isSpeaking()) {
        link_->post(protocol::Adjust{current()->number, manner});
    }
}

void SpeechSession::takeMessages() {
    if (!owner_.isCurrent()) {
        return;
    }
    reapEngines();
    protocol::Event event;
    EngineLink::Input input = EngineLink::Input::Nothing;
    for (int count = 0; link_ && count < kMostMessages; ++count) {
        input = link_->read(event);
        if (input == EngineLink::Input::Nothing) {
            break;
        }
        if (input == EngineLink::Input::Lost) {
            loseEngine(kEnded);
        } else if (!accept(event)) {
            loseEngine(kNonsense);
        }
    }
    mayHaveMore_ = link_ && input == EngineLink::Input::Event;
    tellHub();
}

std::optional<SpeechEvent> SpeechSession::nextEvent() {
    if (mayHaveMore_) {
        takeMessages();
    }
    std::optional<SpeechEvent> event;
    if (hasEvent()) {
        Utterance& first = utterances_.front();
        event = {.utterance = first.number};
        if (!first.words.empty()) {
            event->position = first.words.front().position;
            event->length = first.words.front().length;
            first.words.pop_front();
        } else {
            event->kind = SpeechEvent::Kind::Finished;
            event->completed = first.completed;
            utterances_.pop_front();
        }
    }
    tellHub();
    return event;
}

std::string SpeechSession::takeFailure() {
    return std::exchange(failure_, {});
}

SpeechSession::Utterance* SpeechSession::current() {
    return utterances_.empty() || utterances_.back().isOver ? nullptr : &utterances_.back();
}

void SpeechSession::end(Utterance& utterance, bool completed) {
    utterance.isOver = true;
    utterance.completed = completed;
    tellHub();
}

void SpeechSession::interrupt() {
    if (Utterance* const utterance = current()) {
        utterance->words.clear();
        end(*utterance, false);
    }
}

bool SpeechSession::accept(const protocol::Event& event) {
    if (const auto* const word = std::get_if<protocol::Word>(&event)) {
        return accept(*word);
    }
    if (const auto* const finished = std::get_if<protocol::Finished>(&event)) {
        return accept(*finished);
    }
    return false; // nothing else is said without being asked for
}

bool SpeechSession::accept(const protocol::Word& word) {
    if (word.utterance > lastNumber_) {
        return false;
    }
    Utterance* const utterance = current();
    if (utterance == nullptr || utterance->isStopped || word.utterance != utterance->number) {
        return true; // said before the engine heard of its end
    }
    const bool isWord = word.length > 0 && word.position >= utterance->end &&
                        word.position <= utterance->length &&
                        word.length <= utterance->length - word.position &&
                        utterance->length <= std::numeric_limits<std::uint32_t>::max();
    if (!isWord) {
        return false;
    }
    utterance->words.push_back(
        {static_cast<std::uint32_t>(word.position), static_cast<std::uint32_t>(word.length)});
    utterance->end = word.position + word.length;
    return true;
}

bool SpeechSession::accept(const protocol::Finished& finished) {
    if (finished.utterance > lastNumber_) {
        return false;
    }
    outputs_.erase(finished.utterance);
    Utterance* const utterance = current();
    if (utterance != nullptr && finished.utterance == utterance->number) {
        end(*utterance, finished.completed);
        failure_ = finished.error;
    }
    return true;
}

void SpeechSession::loseEngine(const char* reason) {
    link_->kill();
    EventHub::shared().unwatch(link_->descriptor());
    link_.reset();
    for (const auto& [number, output] : outputs_) {
        output.discard();
    }
    outputs_.clear();
    if (Utterance* const utterance = current()) {
        failure_ = reason;
        end(*utterance, false);
    }
}

bool SpeechSession::hasEvent() const {
    return !utterances_.empty() && (utterances_.front().isOver || !utterances_.front().words.empty());
}

void SpeechSession::tellHub() {
    if (mayHaveMore_ || hasEvent()) {
        EventHub::shared().addReady(source_);
    } else {
        EventHub::shared().remove(source_);
    }
}

} // namespace zqm::platform
