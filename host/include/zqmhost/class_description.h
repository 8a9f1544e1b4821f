// What a plugin's class records declare, as plain values.

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zqm::host {

// "Integer", "String", "Variant" and the like, or the name of a class as the plugin wrote it.
struct TypeDescription {
    std::string name;
    bool isArray = false;

    friend bool operator==(const TypeDescription&, const TypeDescription&) = default;
};

// Of a method or an event.
struct ParameterDescription {
    std::string name;
    TypeDescription type;
    bool byRef = false;
    bool assigns = false;                         // called as object.Member(other arguments) = this one
    std::optional<std::string> defaultValue = {}; // the literal as the plugin wrote it

    friend bool operator==(const ParameterDescription&, const ParameterDescription&) = default;
};

// Without a result it answers nothing.
struct MethodDescription {
    std::string name;
    std::vector<ParameterDescription> parameters = {};
    std::optional<TypeDescription> result = {};
    bool isShared = false;
    bool isCallable = true; // false: declared so that host code can't call it

    friend bool operator==(const MethodDescription&, const MethodDescription&) = default;
};

// Read and set by host code, as far as it can be.
struct PropertyDescription {
    std::string name;
    TypeDescription type;
    bool isReadable = true;
    bool isWritable = true;

    friend bool operator==(const PropertyDescription&, const PropertyDescription&) = default;
};

// As host code would declare a handler of it.
struct EventDescription {
    std::string name;
    std::vector<ParameterDescription> parameters = {};
    std::optional<TypeDescription> result = {};

    friend bool operator==(const EventDescription&, const EventDescription&) = default;
};

// The value as the plugin wrote it.
struct ConstantDescription {
    std::string name;
    std::string value;

    friend bool operator==(const ConstantDescription&, const ConstantDescription&) = default;
};

// The members in the order of the record; those that it inherits are not among them.
struct ClassDescription {
    std::string name;
    std::string super = {}; // empty: none
    std::vector<MethodDescription> methods = {};
    std::vector<MethodDescription> sharedMethods = {};
    std::vector<PropertyDescription> properties = {};
    std::vector<EventDescription> events = {};
    std::vector<ConstantDescription> constants = {};

    friend bool operator==(const ClassDescription&, const ClassDescription&) = default;
};

// Each in host syntax, on one line: "String()", "byref error as NSErrorZQM", "start(Text as String) as
// Boolean", "Rate as Double", "Limit = 3". Whether a method is shared and a property read-only isn't told.
std::string declaration(const TypeDescription& type);
std::string declaration(const ParameterDescription& parameter);
std::string declaration(const MethodDescription& method);
std::string declaration(const PropertyDescription& property);
std::string declaration(const EventDescription& event);
std::string declaration(const ConstantDescription& constant);

} // namespace zqm::host
