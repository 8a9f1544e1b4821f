// A class as the host knows it: built in, or made from a plugin's record, every declaration parsed once.

#pragma once

#include "declaration.h"
#include "function_type.h"
#include "object_content.h"
#include "plugin/host_interface.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// What a class reference points to is of no concern to plugins.
struct REALclassStruct {};

namespace zqm::host {

struct Method {
    Declaration declaration;
    void* function = nullptr;
    bool callable = true; // by host code
    std::unique_ptr<FunctionType> type;
};

struct Property {
    std::string name;
    Type type;
    std::int64_t parameter = 0;
    // Without functions the value is kept by the host (properties of built-in classes).
    bool kept = false;
    void* getter = nullptr;
    void* setter = nullptr;
    std::unique_ptr<FunctionType> getterType;
    std::unique_ptr<FunctionType> setterType;
};

struct Event {
    Declaration declaration;
    std::uint64_t token = 0;
    std::unique_ptr<FunctionType> type;
};

struct Constant {
    std::string name;
    std::string value;
};

struct HostClass : REALclassStruct {
    std::string name;
    const HostClass* super = nullptr;
    const ClassRecord* record = nullptr; // null: built in, or the host program's own
    bool creatable = true;               // by name
    std::size_t dataSize = 0;            // at least its superclass's, whose data it continues
    std::vector<Method> methods;
    std::vector<Method> sharedMethods;
    std::vector<Property> properties;
    std::deque<Event> events; // never moved: handlers point to them
    std::vector<Constant> constants;
    // What its objects hold, as those of its subclasses do; none: as the superclass says.
    std::unique_ptr<ObjectContent> (*makeContent)() = nullptr;
    // Of classes of the host program's own: given the instance data of a new object, and of one that ends.
    std::function<void(void*)> initialise;
    std::function<void(void*)> dispose;

    bool isA(const HostClass& other) const {
        const HostClass* one = this;
        while (one != nullptr && one != &other) {
            one = one->super;
        }
        return one != nullptr;
    }

    // Whether something is to be run when an object of it ends.
    bool hasAnEnd() const {
        const HostClass* one = this;
        while (one != nullptr && one->record == nullptr && !one->dispose) {
            one = one->super;
        }
        return one != nullptr;
    }
};

// Makes the types of the property's functions, from its own type.
void addFunctionTypes(Property& property);

// The member of that name, in the class or the nearest of its superclasses; null when there is none.
const Property* findProperty(const HostClass& type, std::string_view name);
const Event* findEvent(const HostClass& type, std::string_view name);
const Event* findEvent(const HostClass& type, std::uint64_t token);
const Constant* findConstant(const HostClass& type, std::string_view name);
// All overloads, those of the class itself first; one hidden by an equal one below it is left out.
std::vector<const Method*> findMethods(const HostClass& type, std::string_view name);
std::vector<const Method*> findSharedMethods(const HostClass& type, std::string_view name);

} // namespace zqm::host
