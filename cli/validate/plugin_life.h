// What a host program does with the classes of a plugin: objects of each are made, every member is called,
// and all is let go.

#pragma once

#include "cli/validate/argument_values.h"

#include <zqmhost/zqmhost.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zqm::cli {

struct LifePlan {
    bool constructed = true; // by each "Constructor" in turn
    bool extreme = false;    // each argument in turn takes each extreme value
};

class PluginLife {
public:
    // Is told of each call before it is made, in one line.
    using Told = std::function<void(const std::string&)>;

    // Of the classes that the runtime has now.
    PluginLife(host::Runtime& runtime, std::uint64_t seed, LifePlan plan, Told told);

    // Once. What the plugin raises is host programs' matter.
    void live();

private:
    using Methods = std::vector<host::MethodDescription>;
    using Perform = std::function<host::Value(const std::vector<host::Value>&)>;

    void liveObject(const host::ClassDescription& type, const host::MethodDescription* constructor);
    void useMembers(const host::ClassDescription& type, host::Object& object);
    void useProperty(const host::PropertyDescription& property, host::Object& object);
    // With values for its parameters, in all the ways that the plan wants.
    void useMethod(const host::MethodDescription& method, const Perform& perform);
    void call(const host::MethodDescription& method, const std::vector<host::Value>& chosen,
              const Perform& perform);
    void attempt(const std::string& what, const std::function<void()>& action);
    void take(const host::Value& answer);
    // The class and those above it that are the plugin's.
    std::vector<const host::ClassDescription*> lineOf(const host::ClassDescription& type) const;
    Methods constructorsOf(const host::ClassDescription& type) const;

    host::Runtime* runtime_;
    LifePlan plan_;
    Told told_;
    std::vector<host::ClassDescription> classes_;
    ArgumentValues values_;
    std::vector<host::Object> found_; // what members answered, to be looked at in its turn
    std::string of_;                  // the class whose members are called
};

} // namespace zqm::cli
