// How host objects come and go.

#include "core.h"
#include "event_closure.h"
#include "text.h"

#include <utility>

namespace zqm::host {

namespace {

constexpr std::string_view kDestructor = "Destructor";

// The class's own, not an inherited one.
const Method* destructorMethod(const HostClass& type) {
    for (const Method& method : type.methods) {
        if (method.declaration.parameters.empty() && sameName(method.declaration.name, kDestructor)) {
            return &method;
        }
    }
    return nullptr;
}

} // namespace

Object Core::adopt(REALobject locked, std::string_view where) {
    if (locked == nullptr || handles_.find<ObjectHandle>(locked, where) == nullptr) {
        return {};
    }
    return {shared_from_this(), locked};
}

Object Core::borrow(REALobject object, std::string_view where) {
    auto* handle = object == nullptr ? nullptr : handles_.find<ObjectHandle>(object, where);
    if (handle == nullptr) {
        return {};
    }
    ++handle->locks;
    return {shared_from_this(), object};
}

void Core::lock(REALobject object, std::string_view where) {
    if (auto* handle = handles_.find<ObjectHandle>(object, where)) {
        ++handle->locks;
    }
}

void Core::unlock(REALobject object, std::string_view where) {
    auto* handle = handles_.find<ObjectHandle>(object, where);
    if (handle == nullptr) {
        return;
    }
    if (handle->locks > 1) {
        --handle->locks;
    } else if (handle->ending) {
        reports_.add(Report::Kind::UnbalancedLock,
                     std::string(where) + ": " + handle->type.name + " unlocked too often while it ends");
    } else {
        end(*handle);
    }
}

REALobject Core::newInstance(std::string_view className) {
    const HostClass* type = classes_.find(className);
    if (type == nullptr || !type->creatable) {
        return nullptr;
    }
    auto& object = handles_.add<ObjectHandle>(*type);
    for (const HostClass* one = type; one != nullptr && object.content == nullptr; one = one->super) {
        if (one->makeContent != nullptr) {
            object.content = one->makeContent();
        }
    }
    runConstructors(*type, object.handle());
    return object.handle();
}

Object Core::makeObject(std::string_view className, std::unique_ptr<ObjectContent> content) {
    auto& object = handles_.add<ObjectHandle>(*classes_.find(className));
    object.content = std::move(content);
    return {shared_from_this(), object.handle()};
}

void Core::runConstructors(const HostClass& type, REALobject object) {
    if (type.super != nullptr) {
        runConstructors(*type.super, object);
    }
    if (type.record != nullptr && type.record->constructor != nullptr) {
        type.record->constructor(object);
    }
    if (type.initialise) {
        type.initialise(static_cast<char*>(static_cast<void*>(object)) + kInstanceDataOffset);
    }
}

void Core::end(ObjectHandle& object) {
    // The plugin may lock and unlock it while it ends; the host's own lock stays to the last.
    object.locks = 1;
    object.ending = true;
    if (const Event* event = events_.ended(object)) {
        reports_.add(Report::Kind::MissingLock, "event " + inQuotes(event->declaration.name) + ": " +
                                                    object.type.name +
                                                    " ended while the handler ran, for want of a lock on it");
    }
    REALobject self = object.handle();
    for (const HostClass* type = &object.type; type != nullptr; type = type->super) {
        if (const Method* method = destructorMethod(*type)) {
            Slot argument;
            argument.pointer = self;
            method->type->call(method->function, {&argument, 1});
        }
    }
    for (const HostClass* type = &object.type; type != nullptr; type = type->super) {
        if (type->record != nullptr && type->record->destructor != nullptr) {
            type->record->destructor(self);
        }
        if (type->dispose) {
            type->dispose(object.instanceData());
        }
    }
    if (object.locks != 1) {
        reports_.add(Report::Kind::UnbalancedLock, object.type.name + ": " +
                                                       std::to_string(object.locks - 1) +
                                                       " locks taken while it ended were left on it");
    }
    if (!object.headerIntact()) {
        reports_.add(Report::Kind::DamagedHeader,
                     object.type.name + ": the host's part of it was written to");
    }
    for (auto& [token, handler] : object.takeHandlers()) {
        retire(std::move(handler));
    }
    handles_.retire(object);
}

} // namespace zqm::host
