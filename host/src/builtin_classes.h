// The classes that every host has, described as data.

#pragma once

#include "host_class.h"
#include "object_content.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::host {

// A property is kept by the host, or has C functions.
struct BuiltinProperty {
    std::string_view name;
    std::string_view type;
    void* getter = nullptr;
    void* setter = nullptr; // null beside a getter: read-only
    std::int64_t parameter = 0;
};

struct BuiltinMethod {
    std::string_view declaration;
    void* function;
};

struct BuiltinClass {
    std::string_view name;
    std::string_view super = {}; // stands before it; empty: none
    std::vector<BuiltinProperty> properties = {};
    std::vector<BuiltinMethod> methods = {};
    std::unique_ptr<ObjectContent> (*makeContent)() = nullptr;
    bool creatable = true;
    std::size_t dataSize = 0;
};

// Those of each area, in the files of that area.
std::vector<BuiltinClass> exceptionClasses();
std::vector<BuiltinClass> variantClasses();
std::vector<BuiltinClass> arrayClasses();
std::vector<BuiltinClass> dictionaryClasses();
std::vector<BuiltinClass> dateClasses();
std::vector<BuiltinClass> memoryBlockClasses();
std::vector<BuiltinClass> folderItemClasses();

// Adds them all but the members in `without`, each named "Class.member". Throws CallError when there is no
// such member.
void addBuiltinClasses(std::deque<HostClass>& classes, const std::vector<std::string>& without);

} // namespace zqm::host
