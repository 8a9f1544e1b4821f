#include "core.h"

#include "event_closure.h"
#include "text.h"

#include <utility>

namespace zqm::host {

namespace {

// The resolver is a plain C function, so it can only speak for one runtime.
Core* activeCore = nullptr;

} // namespace

Core::Core(const Options& options) : version_(options.version), classes_(reports_), handles_(reports_) {
    for (const std::string& name : options.refused) {
        entryPoints_.refuse(name);
    }
}

Core::~Core() = default;

Core* Core::active() {
    return activeCore;
}

void Core::activate() {
    if (activeCore != nullptr) {
        throw CallError("another runtime is active in this process");
    }
    activeCore = this;
}

void Core::close() {
    while (ObjectHandle* object = handles_.anyPluginObject()) {
        end(*object);
    }
    activeCore = nullptr;
    raised_.clear();
    retiredHandlers_.clear();
    handles_.clear();
}

void Core::requireOpen() const {
    if (!isOpen()) {
        throw CallError("the runtime of this value has ended");
    }
}

String Core::makeString(std::string_view bytes, std::uint32_t encoding) {
    return {shared_from_this(), handles_.add<StringHandle>(bytes, encoding).handle()};
}

String Core::adopt(REALstring locked, std::string_view where) {
    if (locked == nullptr || handles_.find<StringHandle>(locked, where) == nullptr) {
        return {};
    }
    return {shared_from_this(), locked};
}

String Core::borrow(REALstring string, std::string_view where) {
    String result = adopt(string, where);
    if (!result.isNull()) {
        lock(string, where);
    }
    return result;
}

void Core::lock(REALstring string, std::string_view where) {
    if (auto* handle = handles_.find<StringHandle>(string, where)) {
        ++handle->locks;
    }
}

void Core::unlock(REALstring string, std::string_view where) {
    auto* handle = handles_.find<StringHandle>(string, where);
    if (handle != nullptr && --handle->locks == 0) {
        handles_.retire(*handle);
    }
}

void Core::lock(const Type& type, void* handle) {
    if (handle == nullptr || type.isArray) {
        return;
    }
    if (type.kind == TypeKind::String) {
        lock(static_cast<REALstring>(handle), "argument");
    } else {
        lock(static_cast<REALobject>(handle), "argument");
    }
}

void Core::unlock(const Type& type, void* handle) {
    if (handle == nullptr || type.isArray) {
        return;
    }
    if (type.kind == TypeKind::String) {
        unlock(static_cast<REALstring>(handle), "argument");
    } else {
        unlock(static_cast<REALobject>(handle), "argument");
    }
}

void Core::guarded(const std::function<void()>& function) {
    struct Swept {
        Core* core;
        ~Swept() {
            if (!core->raised_.inFrame()) {
                // Dropping one may drop objects, and so retire others.
                const auto retired = std::exchange(core->retiredHandlers_, {});
            }
        }
    };
    const Swept swept{this};
    raised_.run(function);
}

void Core::retire(std::shared_ptr<EventClosure> handler) {
    if (raised_.inFrame()) {
        retiredHandlers_.push_back(std::move(handler));
    }
}

} // namespace zqm::host
