// The events that are being raised, and those that someone waits for.

#pragma once

#include "zqmhost/value.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace zqm::host {

struct Event;
struct ObjectHandle;

class RaisedEvents {
public:
    RaisedEvents() = default;
    RaisedEvents(const RaisedEvents&) = delete;
    RaisedEvents& operator=(const RaisedEvents&) = delete;

    // For the time in which a handler of the object's event runs.
    class Running {
    public:
        Running(RaisedEvents& events, const ObjectHandle& object, const Event& event);
        ~Running();
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;

    private:
        RaisedEvents* events_;
    };

    // For the time in which someone waits for the object's event.
    class Awaited {
    public:
        Awaited(RaisedEvents& events, const ObjectHandle& object, const Event& event);
        ~Awaited();
        Awaited(const Awaited&) = delete;
        Awaited& operator=(const Awaited&) = delete;

        // What the first one brought; none as long as it did not come.
        const std::optional<std::vector<Value>>& values() const { return values_; }
        bool isOver() const { return object_ == nullptr || values_.has_value(); }

    private:
        friend class RaisedEvents;

        RaisedEvents* events_;
        const ObjectHandle* object_; // null once it has ended
        const Event* event_;
        std::optional<std::vector<Value>> values_;
    };

    // To be told when an event is raised, and when an object ends.
    void raised(const ObjectHandle& object, const Event& event, const std::vector<Value>& values);
    // Answers the event whose handler runs, the innermost one; null when none does.
    const Event* ended(const ObjectHandle& object);

private:
    struct Handler {
        const ObjectHandle* object; // null once it has ended
        const Event* event;
    };
    std::vector<Handler> running_; // the innermost last
    std::vector<Awaited*> awaited_;
};

} // namespace zqm::host
