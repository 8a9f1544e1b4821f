#include "cli/say/speaking_observer.h"

#include <zqmplatform/speaking.h>

#include <utility>

namespace zqm::cli {
namespace {

using Kind = SpeakingEvent::Kind;

Kind kindOf(ZQMSpeakingEventKind kind) {
    switch (kind) {
    case ZQMSpeakingWord:
        return Kind::Word;
    case ZQMSpeakingPhoneme:
        return Kind::Phoneme;
    case ZQMSpeakingSync:
        return Kind::Sync;
    case ZQMSpeakingProblem:
        return Kind::Problem;
    case ZQMSpeakingFinished:
        break;
    }
    return Kind::Finished;
}

void observe(const ZQMSpeakingEvent* event, void* handler) {
    (*static_cast<SpeakingObserver::Handler*>(handler))({kindOf(event->kind), event->time, event->position,
                                                         event->length, event->opcode, event->symbol,
                                                         event->message, event->text, event->completed != 0});
}

} // namespace

const char* const kLosslessFile = "speech.flac";

SpeakingObserver::SpeakingObserver(host::Object& synthesizer, Handler handler)
    : synthesizer_(synthesizer), handler_(std::move(handler)) {
    ZQMPlatformObserveSpeaking(observe, &handler_);
}

SpeakingObserver::~SpeakingObserver() {
    ZQMPlatformObserveSpeaking(nullptr, nullptr);
}

} // namespace zqm::cli
