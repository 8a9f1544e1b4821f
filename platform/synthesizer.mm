#include "platform/synthesizer.h"

#include "platform/delegate_messages.h"
#include "platform/file_url.h"
#include "platform/foundation_text.h"
#include "platform/log_line.h"
#include "platform/speaking_observer.h"
#include "platform/speech_dictionary.h"
#include "platform/text_portions.h"
#include "platform/voice_catalogue.h"

#include <array>

namespace zqm::platform {
namespace {

using protocol::Boundary;
using protocol::Manner;

// What an engine can say of a text at one go is limited.
constexpr std::size_t kPhonemePortion = 10'000;

BOOL refuse(const std::string& reason) {
    logLine("Speech can't be started: " + reason);
    return NO;
}

std::optional<Boundary> boundaryOf(NSSpeechBoundary boundary) {
    constexpr std::array kBoundaries{Boundary::Immediate, Boundary::Word, Boundary::Sentence};
    return boundary < kBoundaries.size() ? std::optional(kBoundaries[boundary]) : std::nullopt;
}

// What the second one gives replaces what the first one has.
Manner combined(Manner manner, const Manner& change) {
    const auto replace = [](auto& member, const auto& given) {
        if (given) {
            member = given;
        }
    };
    replace(manner.rate, change.rate);
    replace(manner.volume, change.volume);
    replace(manner.pitchBase, change.pitchBase);
    replace(manner.pitchModulation, change.pitchModulation);
    replace(manner.input, change.input);
    replace(manner.characters, change.characters);
    replace(manner.numbers, change.numbers);
    return manner;
}

Manner ownManner(const protocol::Voice& voice) {
    return {.rate = voice.rate,
            .volume = 1,
            .pitchBase = voice.pitchBase,
            .pitchModulation = voice.pitchModulation,
            .input = protocol::InputMode::Text,
            .characters = protocol::SpellingMode::Normal,
            .numbers = protocol::SpellingMode::Normal};
}

} // namespace

const protocol::Voice* voiceNamed(NSString* identifier) {
    return identifier != nil ? findVoice(utf8Of(identifier))
                             : voiceForLocale(availableVoices(), messageLocale());
}

Synthesizer::~Synthesizer() {
    for (const auto& [number, text] : texts_) {
        [text release];
    }
    [output_ release];
}

BOOL Synthesizer::start(NSString* text) {
    return output_ != nil ? start(text, output_) : start(text, std::optional<OutputFile>());
}

BOOL Synthesizer::start(NSString* text, NSURL* url) {
    if (text == nil || url == nil) {
        return NO;
    }
    const auto path = pathOf(url);
    if (!path) {
        return refuse("not the URL of a file here: " + utf8Of([url absoluteString]));
    }
    std::string error;
    auto output = OutputFile::open(*path, error);
    return output ? start(text, std::move(output)) : refuse(error);
}

BOOL Synthesizer::start(NSString* text, std::optional<OutputFile> output) {
    if (text == nil) {
        return NO;
    }
    const SpeechRequest request{.text = utf8Of(text),
                                .length = [text length],
                                .voice = voice_->identifier,
                                .manner = manner_,
                                .delimiters = delimiters_};
    std::string error;
    const std::uint64_t number = session_.start(request, std::move(output), error);
    if (number == 0) {
        return refuse(error);
    }
    texts_.emplace(number, [text copy]);
    return YES;
}

void Synthesizer::stop(NSSpeechBoundary boundary) {
    if (const auto known = boundaryOf(boundary)) {
        session_.stop(*known);
    }
}

void Synthesizer::pause(NSSpeechBoundary boundary) {
    if (const auto known = boundaryOf(boundary)) {
        session_.pause(*known);
    }
}

NSString* Synthesizer::phonemes(NSString* text) {
    if (text == nil) {
        return nil;
    }
    std::string symbols;
    for (const std::string& portion : portionsOf(utf8Of(text), kPhonemePortion)) {
        std::string error;
        const auto answer = session_.phonemes({portion, voice_->identifier, manner_}, error);
        if (!answer) {
            logLine("Phonemes can't be told: " + error);
            return nil;
        }
        symbols += symbols.empty() || answer->empty() ? "" : " ";
        symbols += *answer;
    }
    return stringOf(symbols);
}

void Synthesizer::addDictionary(NSDictionary* dictionary) {
    std::string error;
    auto entries = lexiconOf(dictionary, error);
    if (!entries) {
        logLine("Speech dictionary refused: " + error);
        return;
    }
    session_.addDictionary(std::move(*entries));
}

NSString* Synthesizer::voice() const {
    return stringOf(voice_->identifier);
}

Manner Synthesizer::manner() const {
    return combined(ownManner(*voice_), manner_);
}

void Synthesizer::change(const Manner& manner) {
    manner_ = combined(manner_, manner);
    session_.adjust(manner);
}

bool Synthesizer::setVoice(NSString* identifier) {
    const protocol::Voice* const voice = isSpeaking() ? nullptr : voiceNamed(identifier);
    if (voice == nullptr) {
        return false;
    }
    voice_ = voice;
    manner_.rate.reset();
    manner_.volume.reset();
    manner_.pitchBase.reset();
    manner_.pitchModulation.reset();
    return true;
}

void Synthesizer::setOutput(NSURL* url) {
    NSURL* const former = output_;
    output_ = [url copy];
    [former release];
}

void Synthesizer::reset() {
    manner_ = {};
    setOutput(nil);
    session_.adjust(manner());
}

// The last thing that is done with this object here is the callback, which may end it.
bool Synthesizer::deliver() {
    for (;;) {
        if (isSpeakingObserved()) {
            if (const auto event = session_.eventToShow()) {
                tellObserver(*event);
                return true;
            }
        }
        const auto event = session_.nextEvent();
        if (!event) {
            return false;
        }
        if (!event->failure.empty()) {
            logLine("Speech ended early: " + event->failure);
        }
        const auto text = texts_.find(event->utterance);
        NSString* const string = [[text->second retain] autorelease];
        if (event->kind == SpeechEvent::Kind::Finished) {
            [text->second release];
            texts_.erase(text);
        }
        if ([delegate respondsToSelector:selectorOf(event->kind)]) {
            tell(delegate, object_, *event, string);
            return true;
        }
    }
}

} // namespace zqm::platform
