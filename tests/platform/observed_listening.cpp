#include "tests/platform/observed_listening.h"

#include "tests/platform/waiting.h"

#include <algorithm>
#include <iterator>

namespace zqm::platform::test {
namespace {

void note(const ZQMListeningEvent* event, void* context) {
    auto& observed = *static_cast<Observed*>(context);
    const ObservedEvent copy{event->kind,    event->begin,  event->end,  event->level,
                             event->command, event->reason, event->count};
    observed.events.push_back(copy);
    if (observed.onEvent) {
        observed.onEvent(copy);
    }
}

} // namespace

Observed::Observed() {
    ZQMPlatformObserveListening(note, this);
}

Observed::~Observed() {
    ZQMPlatformObserveListening(nullptr, nullptr);
}

bool Observed::runUntil(ZQMListeningEventKind kind, std::size_t count) const {
    return test::runUntil([&] { return of(kind).size() >= count; });
}

std::vector<ZQMListeningEventKind> Observed::kinds() const {
    std::vector<ZQMListeningEventKind> kinds;
    std::ranges::transform(events, std::back_inserter(kinds), &ObservedEvent::kind);
    return kinds;
}

std::vector<ObservedEvent> Observed::of(ZQMListeningEventKind kind) const {
    std::vector<ObservedEvent> some;
    std::ranges::copy_if(events, std::back_inserter(some),
                         [&](const ObservedEvent& event) { return event.kind == kind; });
    return some;
}

} // namespace zqm::platform::test
