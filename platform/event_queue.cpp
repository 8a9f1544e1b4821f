#include "platform/event_queue.h"

#include <utility>

namespace zqm::platform {

using Kind = SpeechEvent::Kind;

void EventQueue::add(const protocol::Word& word) {
    items_.push_back({word.at, static_cast<std::uint32_t>(word.position),
                      static_cast<std::uint32_t>(word.length), Kind::Word});
}

void EventQueue::add(const protocol::Phoneme& phoneme) {
    items_.push_back({phoneme.at, static_cast<std::uint32_t>(phoneme.opcode), 0, Kind::Phoneme});
}

void EventQueue::add(protocol::Problem problem) {
    items_.push_back({problem.at, static_cast<std::uint32_t>(problem.position), 0, Kind::Problem});
    messages_.push_back(std::move(problem.message));
}

void EventQueue::add(const protocol::Sync& sync) {
    items_.push_back({sync.at, sync.message, 0, Kind::Sync});
}

SpeechEvent EventQueue::first() const {
    const Item& item = items_.front();
    SpeechEvent event{.kind = item.kind, .time = item.time};
    if (item.kind == Kind::Phoneme || item.kind == Kind::Sync) {
        event.value = item.first;
    } else {
        event.position = item.first;
        event.length = item.second;
    }
    if (item.kind == Kind::Problem) {
        event.message = messages_.front();
    }
    return event;
}

void EventQueue::removeFirst() {
    if (items_.front().kind == Kind::Problem) {
        messages_.pop_front();
    }
    items_.pop_front();
}

void EventQueue::clear() {
    items_.clear();
    messages_.clear();
}

} // namespace zqm::platform
