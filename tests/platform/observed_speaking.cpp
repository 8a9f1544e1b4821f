#include "tests/platform/observed_speaking.h"

#include "tests/platform/waiting.h"

#include <algorithm>
#include <iterator>

namespace zqm::platform::test {
namespace {

void note(const ZQMSpeakingEvent* event, void* context) {
    auto& observed = *static_cast<ObservedSpeaking*>(context);
    const SpokenEvent copy{event->kind,   event->time, event->position, event->length,        event->opcode,
                           event->symbol, event->text, event->message,  event->completed != 0};
    observed.events.push_back(copy);
    if (observed.onEvent) {
        observed.onEvent(copy);
    }
}

} // namespace

ObservedSpeaking::ObservedSpeaking() {
    ZQMPlatformObserveSpeaking(note, this);
}

ObservedSpeaking::~ObservedSpeaking() {
    ZQMPlatformObserveSpeaking(nullptr, nullptr);
}

bool ObservedSpeaking::runToEnd(std::size_t finishes) const {
    return runUntil([&] { return of(ZQMSpeakingFinished).size() >= finishes; });
}

std::vector<SpokenEvent> ObservedSpeaking::of(ZQMSpeakingEventKind kind) const {
    std::vector<SpokenEvent> some;
    std::ranges::copy_if(events, std::back_inserter(some),
                         [&](const SpokenEvent& event) { return event.kind == kind; });
    return some;
}

} // namespace zqm::platform::test
