#include "event_closure.h"

#include "core.h"
#include "marshalling.h"
#include "text.h"

#include <exception>
#include <new>
#include <stdexcept>

namespace zqm::host {

EventClosure::EventClosure(Core& core, const Event& event, EventHandler handler)
    : core_(&core), event_(&event), handler_(std::move(handler)) {
    closure_ = static_cast<ffi_closure*>(ffi_closure_alloc(sizeof(ffi_closure), &function_));
    if (closure_ == nullptr) {
        throw std::bad_alloc();
    }
    if (ffi_prep_closure_loc(closure_, event.type->description(), enter, this, function_) != FFI_OK) {
        ffi_closure_free(closure_);
        throw std::runtime_error("libffi can't make a function for event " + event.declaration.name);
    }
}

EventClosure::~EventClosure() {
    ffi_closure_free(closure_);
}

// No lock of the host's keeps the object alive: one would hide that the plugin holds none.
struct EventClosure::Lent {
    Arguments arguments;
    ~Lent() { arguments.sender_.release(); }
};

void EventClosure::enter(ffi_cif* /*description*/, void* /*result*/, void** arguments, void* closure) {
    // The handler may drop its object or put another handler in its own place.
    const auto alive = static_cast<EventClosure*>(closure)->shared_from_this();
    try {
        alive->handle(arguments);
    } catch (...) {
        // Not through the plugin: it leaves the host's own call around this one.
        alive->core_->keepThrown(std::current_exception());
    }
}

void EventClosure::handle(void** arguments) {
    const std::string where = "event " + inQuotes(event_->declaration.name);
    REALobject self = *static_cast<REALobject*>(arguments[0]);
    auto* object = core_->handles().find<ObjectHandle>(self, where);
    if (object == nullptr) {
        return;
    }
    ++object->members().raised[event_->token];
    std::vector<Value> values;
    std::size_t index = 1;
    for (const Parameter& parameter : event_->declaration.parameters) {
        values.push_back(borrowedValue(*core_, parameter.type, arguments[index], where));
        ++index;
    }
    core_->events().raised(*object, *event_, values);
    const RaisedEvents::Running running(core_->events(), *object, *event_);
    Lent lent{Arguments(core_->adopt(self, where), std::move(values))};
    handler_(lent.arguments);
}

} // namespace zqm::host
