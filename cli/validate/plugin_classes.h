// The classes that a plugin declares, with what they inherit of each other.

#pragma once

#include <zqmhost/zqmhost.h>

#include <string_view>
#include <vector>

namespace zqm::cli {

// As host code compares names.
bool sameName(std::string_view one, std::string_view other);

class PluginClasses {
public:
    using Methods = std::vector<host::MethodDescription>;

    explicit PluginClasses(std::vector<host::ClassDescription> classes) : classes_(std::move(classes)) {}

    const std::vector<host::ClassDescription>& all() const { return classes_; }
    // Null: no class of the plugin is called that.
    const host::ClassDescription* find(std::string_view name) const;
    // The class and those above it that are the plugin's.
    std::vector<const host::ClassDescription*> lineOf(const host::ClassDescription& type) const;
    // Each "Constructor" that host code may call.
    Methods constructorsOf(const host::ClassDescription& type) const;

private:
    std::vector<host::ClassDescription> classes_;
};

} // namespace zqm::cli
