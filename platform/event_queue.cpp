#include "platform/event_queue.h"

#include <utility>

namespace zqm::platform {

using Kind = SpeechEvent::Kind;

void EventQueue::add(const protocol::Word& word) {
    items_.push_back(
        {static_cast<std::uint32_t>(word.position), static_cast<std::uint32_t>(word.length), Kind::Word});
}

void EventQueue::add(const protocol::Phoneme& phoneme) {
    items_.push_back({static_cast<std::uint32_t>(phoneme.opcode), 0, Kind::Phoneme});
}

void EventQueue::add(protocol::Problem problem) {
    items_.push_back({static_cast<std::uint32_t>(problem.position), 0, Kind::Problem});
    messages_.push_back(std::move(problem.message));
}

void EventQueue::add(const protocol::Sync& sync) {
    items_.push_back({sync.message, 0, Kind::Sync});
}

SpeechEvent EventQueue::take() {
    const Item item = items_.front();
    items_.pop_front();
    SpeechEvent event{.kind = item.kind};
    if (item.kind == Kind::Phoneme || item.kind == Kind::Sync) {
        event.value = item.first;
    } else {
        event.position = item.first;
        event.length = item.second;
    }
    if (item.kind == Kind::Problem) {
        event.message = std::move(messages_.front());
        messages_.pop_front();
    }
    return event;
}

void EventQueue::clear() {
    items_.clear();
    messages_.clear();
}

} // namespace zqm::platform
