#include "raised_events.h"

#include <algorithm>

namespace zqm::host {

RaisedEvents::Running::Running(RaisedEvents& events, const ObjectHandle& object, const Event& event)
    : events_(&events) {
    events_->running_.push_back({&object, &event});
}

RaisedEvents::Running::~Running() {
    events_->running_.pop_back();
}

RaisedEvents::Awaited::Awaited(RaisedEvents& events, const ObjectHandle& object, const Event& event)
    : events_(&events), object_(&object), event_(&event) {
    events_->awaited_.push_back(this);
}

RaisedEvents::Awaited::~Awaited() {
    std::erase(events_->awaited_, this);
}

void RaisedEvents::raised(const ObjectHandle& object, const Event& event, const std::vector<Value>& values) {
    for (Awaited* awaited : awaited_) {
        if (awaited->object_ == &object && awaited->event_ == &event && !awaited->values_) {
            awaited->values_ = values;
        }
    }
}

const Event* RaisedEvents::ended(const ObjectHandle& object) {
    for (Awaited* awaited : awaited_) {
        if (awaited->object_ == &object) {
            awaited->object_ = nullptr;
        }
    }
    const Event* innermost = nullptr;
    for (Handler& handler : running_) {
        if (handler.object == &object) {
            handler.object = nullptr;
            innermost = handler.event;
        }
    }
    return innermost;
}

} // namespace zqm::host
