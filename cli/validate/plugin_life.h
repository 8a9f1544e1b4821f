// What a host program does with the classes of a plugin: objects of each are made, every member is called,
// and all is let go.

#pragma once

#include "cli/validate/argument_values.h"
#include "cli/validate/plugin_classes.h"

#include <zqmhost/zqmhost.h>

#include <cstdint>
#include <functional>
#include <map>
#include <set>
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

    // Of the classes that the runtime has now. Files that are named to the plugin are in that folder, an
    // absolute path.
    PluginLife(host::Runtime& runtime, std::uint64_t seed, std::string folder, LifePlan plan, Told told);

    // Once. What the plugin raises is host programs' matter.
    void live();

    // The members that it was to call and could not, not once, a line for each with the cause.
    std::vector<std::string> uncalled() const;

private:
    using Arguments = std::vector<host::Value>;
    using Perform = std::function<host::Value(const Arguments&)>;

    void liveClass(const host::ClassDescription& type);
    // A new object, which is used so and let go.
    void liveObject(const host::ClassDescription& type, const std::function<void(host::Object&)>& use);
    void liveFoundObjects();
    void construct(const host::MethodDescription& constructor, host::Object& object,
                   const Arguments& arguments);
    void useMembers(const host::ClassDescription& type, host::Object& object);
    void readProperties(const host::ClassDescription& type, host::Object& object);
    void readProperty(const host::PropertyDescription& property, host::Object& object);
    void useProperty(const host::PropertyDescription& property, host::Object& object);
    // With values for its parameters, in all the ways that the plan wants.
    void useMethod(const host::MethodDescription& method, const Perform& perform);
    void withExtremes(const host::MethodDescription& method,
                      const std::function<void(const Arguments&)>& use);
    Arguments ordinaryFor(const host::MethodDescription& method);
    void call(const host::MethodDescription& method, const Arguments& chosen, const Perform& perform);
    // Of a member, which is called so.
    void attempt(const std::string& member, const std::string& what, const std::function<void()>& action);
    void attempt(const std::string& what, const std::function<void()>& action) {
        attempt(what, what, action);
    }
    void take(const host::Value& answer);
    std::string nameOf(const host::MethodDescription& method) const;

    host::Runtime* runtime_;
    LifePlan plan_;
    Told told_;
    PluginClasses classes_;
    ArgumentValues values_;
    std::vector<host::Object> found_; // what members answered, to be looked at in its turn
    std::string of_;                  // the class whose members are called
    std::set<std::string> called_;
    std::map<std::string, std::string> failed_; // why the last call of a member could not be made
};

} // namespace zqm::cli
