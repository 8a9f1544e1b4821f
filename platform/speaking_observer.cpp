#include "platform/speaking_observer.h"

#include "engine/protocol/phoneme_symbols.h"

#include <zqmplatform/speaking.h>

namespace zqm::platform {
namespace {

struct {
    ZQMSpeakingObserver function;
    void* context;
} observer;

ZQMSpeakingEventKind kindOf(SpeechEvent::Kind kind) {
    switch (kind) {
    case SpeechEvent::Kind::Word:
        return ZQMSpeakingWord;
    case SpeechEvent::Kind::Phoneme:
        return ZQMSpeakingPhoneme;
    case SpeechEvent::Kind::Problem:
        return ZQMSpeakingProblem;
    case SpeechEvent::Kind::Sync:
        return ZQMSpeakingSync;
    case SpeechEvent::Kind::Finished:
        break;
    }
    return ZQMSpeakingFinished;
}

} // namespace

bool isSpeakingObserved() {
    return observer.function != nullptr;
}

void tellObserver(const SpeechEvent& event) {
    ZQMSpeakingEvent told{.kind = kindOf(event.kind),
                          .time = event.time,
                          .position = event.position,
                          .length = event.length,
                          .opcode = 0,
                          .symbol = "",
                          .text = event.message.c_str(),
                          .message = 0,
                          .completed = event.completed ? 1 : 0};
    if (event.kind == SpeechEvent::Kind::Sync) {
        told.message = event.value;
    } else if (event.kind == SpeechEvent::Kind::Phoneme) {
        told.opcode = static_cast<int>(event.value);
        const auto symbols = protocol::phonemeSymbols();
        told.symbol = event.value < symbols.size() ? symbols[event.value].symbol.data() : "";
    }
    observer.function(&told, observer.context);
}

} // namespace zqm::platform

void ZQMPlatformObserveSpeaking(ZQMSpeakingObserver observer, void* context) {
    zqm::platform::observer = {observer, context};
}
