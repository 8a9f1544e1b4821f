// The classes a runtime knows: the built-in ones and those that plugins register.

#pragma once

#include "host_class.h"
#include "plugin/host_interface.h"
#include "reports.h"
#include "zqmhost/class_definition.h"

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::host {

class ClassRegistry {
public:
    // Without those members of built-in classes. Throws CallError when one is not known.
    ClassRegistry(Reports& reports, const std::vector<std::string>& without);

    // Checks the record, reports what is wrong with it, and takes in what can be used of it. Writes the
    // tokens of its events.
    void add(ClassRecord* record, std::optional<std::int32_t> announcedRevision);

    // A class of the host program's own. Throws CallError when there is one of that name already, or none of
    // that of its superclass.
    void define(const ClassDefinition& definition);

    const HostClass* find(std::string_view name) const;
    const HostClass* find(REALclassRef reference) const;
    // The property of the class, or that of Variants, which all objects are; null when there is neither.
    const Property* findProperty(const HostClass& type, std::string_view name) const;
    const std::deque<HostClass>& all() const { return classes_; }

private:
    Reports* reports_;
    std::deque<HostClass> classes_; // never moved: everything points to them
};

} // namespace zqm::host
