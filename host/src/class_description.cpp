#include "zqmhost/class_description.h"

namespace zqm::host {

namespace {

std::string typed(const std::string& name, const TypeDescription& type) {
    return name + " as " + declaration(type);
}

std::string callable(const std::string& name, const std::vector<ParameterDescription>& parameters,
                     const std::optional<TypeDescription>& result) {
    std::string line = name + "(";
    const char* separator = "";
    for (const ParameterDescription& parameter : parameters) {
        line += separator + declaration(parameter);
        separator = ", ";
    }
    line += ")";
    return result ? typed(line, *result) : line;
}

} // namespace

std::string declaration(const TypeDescription& type) {
    return type.isArray ? type.name + "()" : type.name;
}

std::string declaration(const ParameterDescription& parameter) {
    std::string line = parameter.byRef ? "byref " : "";
    line += parameter.assigns ? "assigns " : "";
    line += typed(parameter.name, parameter.type);
    return parameter.defaultValue ? line + " = " + *parameter.defaultValue : line;
}

std::string declaration(const MethodDescription& method) {
    return callable(method.name, method.parameters, method.result);
}

std::string declaration(const PropertyDescription& property) {
    return typed(property.name, property.type);
}

std::string declaration(const EventDescription& event) {
    return callable(event.name, event.parameters, event.result);
}

std::string declaration(const ConstantDescription& constant) {
    return constant.name + " = " + constant.value;
}

} // namespace zqm::host
