#include "class_registry.h"

#include "builtin_classes.h"
#include "record_reader.h"
#include "text.h"
#include "variant_content.h"
#include "zqmhost/errors.h"

#include <algorithm>
#include <string>
#include <utility>

namespace zqm::host {

ClassRegistry::ClassRegistry(Reports& reports, const std::vector<std::string>& without) : reports_(&reports) {
    addBuiltinClasses(classes_, without);
}

void ClassRegistry::define(const ClassDefinition& definition) {
    if (definition.name.empty() || find(definition.name) != nullptr) {
        throw CallError("a class can't be called " + inQuotes(definition.name) + ", which " +
                        (definition.name.empty() ? "is no name" : "is another's name"));
    }
    const HostClass* super = definition.super.empty() ? nullptr : find(definition.super);
    if (!definition.super.empty() && (super == nullptr || !super->creatable)) {
        throw CallError("no class " + inQuotes(definition.super) + " can be the superclass of " +
                        definition.name);
    }
    HostClass& type = classes_.emplace_back();
    type.name = definition.name;
    type.super = super;
    type.dataSize = std::max(definition.dataSize, super == nullptr ? 0 : super->dataSize);
    type.initialise = definition.initialise;
    type.dispose = definition.dispose;
}

void ClassRegistry::add(ClassRecord* record, std::optional<std::int32_t> announcedRevision) {
    if (record == nullptr) {
        reports_->add(Report::Kind::BadRecord, "PluginRegisterClass: no record");
        return;
    }
    if (!isAligned(record)) {
        reports_->add(Report::Kind::BadRecord,
                      "PluginRegisterClass: a record at an address that is no multiple of 8");
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

const Property* ClassRegistry::findProperty(const HostClass& type, std::string_view name) const {
    const Property* own = host::findProperty(type, name);
    return own == nullptr ? host::findProperty(*find(kVariantClass), name) : own;
}

const HostClass* ClassRegistry::find(REALclassRef reference) const {
    const auto found =
        std::ranges::find_if(classes_, [reference](const HostClass& type) { return &type == reference; });
    return found == classes_.end() ? nullptr : &*found;
}

} // namespace zqm::host
