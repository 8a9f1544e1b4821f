#include "entry_point_types.h"
#include "offered_entry_points.h"

namespace zqm::host {

namespace {

double hostVersion(Core& core) {
    return core.version().value_or(0);
}

void registerPluginVersion(Core& core, std::int32_t revision) {
    core.announcedRevision = revision;
}

void registerClass(Core& core, void* record) {
    core.classes().add(static_cast<ClassRecord*>(record), core.announcedRevision);
}

} // namespace

std::vector<EntryPoints::Entry> startUpEntryPoints() {
    return {
        offer<entry::REALGetRBVersion, hostVersion>(),
        offer<entry::RegisterPluginVersion, registerPluginVersion>(),
        offer<entry::REALRegisterClass, registerClass>(),
    };
}

} // namespace zqm::host
