// A handler of the host program as a C function that a plugin can call.

#pragma once

#include "host_class.h"
#include "plugin/host_interface.h"
#include "zqmhost/object.h"

#include <ffi.h>
#include <memory>

namespace zqm::host {

class Core;

class EventClosure : public std::enable_shared_from_this<EventClosure> {
public:
    // The event must outlive the closure.
    EventClosure(Core& core, const Event& event, EventHandler handler);
    EventClosure(const EventClosure&) = delete;
    EventClosure& operator=(const EventClosure&) = delete;
    ~EventClosure();

    // void (REALobject self, arguments in the order of the declaration)
    void* function() const { return function_; }

private:
    struct Lent;

    static void enter(ffi_cif* description, void* result, void** arguments, void* closure);
    void handle(void** arguments);

    Core* core_;
    const Event* event_;
    EventHandler handler_;
    ffi_closure* closure_ = nullptr;
    void* function_ = nullptr;
};

} // namespace zqm::host
