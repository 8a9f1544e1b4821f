#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace zqm::host {

// A class of the host program's own: one that its code would define, or that stands in for a class of another
// plugin. It has no members but those it inherits.
struct ClassDefinition {
    std::string name;
    std::string super = {}; // of any kind, a plugin's as well; empty: none
    // Bytes of instance data, its superclass's included; at least as many as those.
    std::size_t dataSize = 0;
    // Is given the instance data of each new object, all zero or as the superclass's constructors left it.
    std::function<void(void* instanceData)> initialise = {};
    // Is given the instance data of each object that ends, before the superclass's destructors.
    std::function<void(void* instanceData)> dispose = {};
};

} // namespace zqm::host
