// Between the C++ API's values and the C arguments and results of plugin functions.

#pragma once

#include "declaration.h"
#include "function_type.h"
#include "host_class.h"
#include "zqmhost/value.h"

#include <list>
#include <string_view>
#include <vector>

namespace zqm::host {

class Core;

// The arguments of one call, and what has to live as long as it runs.
class MarshalledArguments {
public:
    explicit MarshalledArguments(Core& core) : core_(&core) {}
    MarshalledArguments(const MarshalledArguments&) = delete;
    MarshalledArguments& operator=(const MarshalledArguments&) = delete;
    ~MarshalledArguments(); // gives up what was not taken back

    void addPointer(void* pointer);
    void addInteger(std::int64_t integer);
    // Throws CallError when the value doesn't fit.
    void add(const Parameter& parameter, const Value& value);
    void addDefault(const Parameter& parameter);

    // After the call: what the plugin wrote by reference goes to the caller's values.
    void takeBack(std::string_view where);

    std::span<Slot> slots() { return slots_; }

private:
    struct Reference {
        Value* target;
        Type type;
        Slot content;
    };

    Core* core_;
    std::vector<Slot> slots_;
    std::vector<Value> held_;
    std::list<Reference> references_; // never moved: the plugin has their address
};

enum class Fit { None, Converted, Exact };
Fit fitOf(Core& core, const Parameter& parameter, const Value& value);
std::string describe(const Value& value);

// What a plugin function answered; a handle in it is the caller's from now on.
Value ownedValue(Core& core, const Type& type, const Slot& slot, std::string_view where);
// The argument at that address, as a closure is given it; a handle in it stays the plugin's.
Value borrowedValue(Core& core, const Type& type, const void* argument, std::string_view where);

} // namespace zqm::host
