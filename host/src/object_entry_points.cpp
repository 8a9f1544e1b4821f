#include "entry_point_types.h"
#include "event_closure.h"
#include "global_methods.h"
#include "offered_entry_points.h"
#include "text.h"

#include <algorithm>

namespace zqm::host {

namespace {

REALobject newInstance(Core& core, const char* className) {
    if (className == nullptr) {
        core.reports().add(Report::Kind::BadArgument,
                           std::string(entry::REALnewInstance::kName) + ": no class name");
        return nullptr;
    }
    return core.newInstance(className);
}

void lockObject(Core& core, REALobject object) {
    core.lock(object, entry::REALLockObject::kName);
}

void unlockObject(Core& core, REALobject object) {
    core.unlock(object, entry::REALUnlockObject::kName);
}

bool objectIsA(Core& core, REALobject object, REALclassRef reference) {
    constexpr const char* kWhere = entry::REALObjectIsA::kName;
    if (object == nullptr) {
        return false;
    }
    const auto* handle = core.handles().find<ObjectHandle>(object, kWhere);
    const HostClass* type = core.classes().find(reference);
    if (type == nullptr) {
        core.reports().add(reference == nullptr ? Report::Kind::NullHandle : Report::Kind::ForeignHandle,
                           std::string(kWhere) + ": no class reference");
    }
    return handle != nullptr && type != nullptr && handle->type.isA(*type);
}

REALclassRef classRef(Core& core, const char* name) {
    const HostClass* type = name == nullptr ? nullptr : core.classes().find(name);
    return const_cast<HostClass*>(type);
}

void* eventInstance(Core& core, REALobject object, std::uint64_t token) {
    constexpr const char* kWhere = entry::REALGetEventInstance::kName;
    const auto* handle = core.handles().find<ObjectHandle>(object, kWhere);
    if (handle == nullptr) {
        return nullptr;
    }
    if (findEvent(handle->type, token) == nullptr) {
        core.reports().add(Report::Kind::BadArgument,
                           std::string(kWhere) + ": " + handle->type.name + " has no event of that token");
        return nullptr;
    }
    const auto& handlers = handle->members().handlers;
    const auto handler = handlers.find(token);
    return handler == handlers.end() ? nullptr : handler->second->function();
}

// Nothing, with a report, when it doesn't parse.
std::optional<Declaration> parsed(Core& core, const char* declaration, const char* where) {
    try {
        return parseAskedDeclaration(declaration == nullptr ? "" : declaration);
    } catch (const DeclarationError& error) {
        core.reports().add(Report::Kind::BadDeclaration, std::string(where) + ": " + error.what());
        return std::nullopt;
    }
}

void* loadGlobalMethod(Core& core, const char* module, const char* text) {
    const auto declaration = parsed(core, text, entry::REALLoadFrameworkMethod::kName);
    const bool has = declaration && module == nullptr && core.hasGlobalMethod(declaration->name);
    return has ? findGlobalMethod(*declaration) : nullptr;
}

void* loadObjectMethod(Core& core, REALobject object, const char* text) {
    constexpr const char* kWhere = entry::REALLoadObjectMethod::kName;
    if (object == nullptr) {
        return nullptr;
    }
    const auto* handle = core.handles().find<ObjectHandle>(object, kWhere);
    const auto declaration = parsed(core, text, kWhere);
    if (handle == nullptr || !declaration) {
        return nullptr;
    }
    for (const Method* method : findMethods(handle->type, declaration->name)) {
        if (sameSignature(method->declaration, *declaration)) {
            return method->function;
        }
    }
    return nullptr;
}

} // namespace

std::vector<EntryPoints::Entry> objectEntryPoints() {
    return {
        offer<entry::REALnewInstance, newInstance>(),
        offer<entry::REALLockObject, lockObject>(),
        offer<entry::REALUnlockObject, unlockObject>(),
        offer<entry::REALObjectIsA, objectIsA>(),
        offer<entry::REALGetClassRef, classRef>(),
        offer<entry::REALGetEventInstance, eventInstance>(),
        offer<entry::REALLoadFrameworkMethod, loadGlobalMethod>(),
        offer<entry::REALLoadObjectMethod, loadObjectMethod>(),
    };
}

} // namespace zqm::host
