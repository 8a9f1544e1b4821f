// The classes a runtime knows: the built-in ones and those that plugins register.

#pragma once

#include "host_class.h"
#include "plugin/host_interface.h"
#include "reports.h"

#include <deque>
#include <optional>
#include <string_view>

namespace zqm::host {

class ClassRegistry {
public:
    explicit ClassRegistry(Reports& reports);

    // Checks the record, reports what is wrong with it, and takes in what can be used of it. Writes the
    // tokens of its events.
    void add(ClassRecord* record, std::optional<std::int32_t> announcedRevision);

    const HostClass* find(std::string_view name) const;
    const HostClass* find(REALclassRef reference) const;
    const std::deque<HostClass>& all() const { return classes_; }

private:
    Reports* reports_;
    std::deque<HostClass> classes_; // never moved: everything points to them
};

} // namespace zqm::host
