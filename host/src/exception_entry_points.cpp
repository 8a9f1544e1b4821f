#include "entry_point_types.h"
#include "offered_entry_points.h"
#include "raised_exception_reader.h"

#include <utility>

namespace zqm::host {

namespace {

void raiseException(Core& core, REALobject exception) {
    constexpr const char* kWhere = entry::REALRaiseException::kName;
    auto* handle = core.handles().find<ObjectHandle>(exception, kWhere);
    if (handle == nullptr) {
        return;
    }
    if (!handle->type.isA(*core.classes().find("RuntimeException"))) {
        core.reports().add(Report::Kind::BadArgument,
                           std::string(kWhere) + ": " + handle->type.name + " is no exception");
        return;
    }
    core.raised().raise(readException(core, *handle));
}

REALobject callWithExceptionHandler(Core& core, void (*function)(void*), void* context) {
    constexpr const char* kWhere = entry::REALCallFunctionWithExceptionHandler::kName;
    if (function == nullptr) {
        core.reports().add(Report::Kind::BadArgument, std::string(kWhere) + ": no function");
        return nullptr;
    }
    const std::vector<RaisedException> raised = core.raised().collect([&] { function(context); });
    if (raised.empty()) {
        return nullptr;
    }
    REALobject first = raised.front().object.handle();
    core.lock(first, kWhere);
    return first;
}

} // namespace

std::vector<EntryPoints::Entry> exceptionEntryPoints() {
    return {
        offer<entry::REALRaiseException, raiseException>(),
        offer<entry::REALCallFunctionWithExceptionHandler, callWithExceptionHandler>(),
    };
}

} // namespace zqm::host
