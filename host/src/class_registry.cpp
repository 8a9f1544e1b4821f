#include "class_registry.h"

#include "builtin_classes.h"
#include "record_reader.h"
#include "text.h"

#include <algorithm>
#include <string>
#include <utility>

namespace zqm::host {

ClassRegistry::ClassRegistry(Reports& reports) : reports_(&reports) {
    addBuiltinClasses(classes_);
}

void ClassRegistry::add(ClassRecord* record, std::optional<std::int32_t> announcedRevision) {
    if (record == nullptr) {
        reports_->add(Report::Kind::BadRecord, "PluginRegisterClass: no record");
        return;
    }
    if (record->name == nullptr || *record->name == '\0') {
        reports_->add(Report::Kind::BadRecord, "PluginRegisterClass: a class without a name");
        return;
    }
    const std::string where = "class " + inQuotes(record->name);
    if (find(record->name) != nullptr) {
        reports_->add(Report::Kind::BadRecord, where + ": registered already");
        return;
    }
    const HostClass* super = nullptr;
    if (record->superName != nullptr) {
        super = find(record->superName);
        if (super == nullptr) {
            reports_->add(Report::Kind::BadRecord,
                          where + ": its superclass " + inQuotes(record->superName) + " is not known");
        }
    }
    if (!announcedRevision) {
        reports_->add(Report::Kind::BadRecord, where + ": registered before \"RegisterPluginVersion\"");
    } else if (static_cast<std::int32_t>(record->version) != *announcedRevision) {
        reports_->add(Report::Kind::BadRecord, where + ": of revision " + std::to_string(record->version) +
                                                   ", announced was " + std::to_string(*announcedRevision));
    }
    RecordReader(*record, super, *reports_).readInto(classes_.emplace_back());
}

const HostClass* ClassRegistry::find(std::string_view name) const {
    const auto found =
        std::ranges::find_if(classes_, [name](const HostClass& type) { return sameName(type.name, name); });
    return found == classes_.end() ? nullptr : &*found;
}

const HostClass* ClassRegistry::find(REALclassRef reference) const {
    const auto found =
        std::ranges::find_if(classes_, [reference](const HostClass& type) { return &type == reference; });
    return found == classes_.end() ? nullptr : &*found;
}

} // namespace zqm::host
