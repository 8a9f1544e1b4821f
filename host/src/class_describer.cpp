#include "class_describer.h"

#include <utility>

namespace zqm::host {

namespace {

MethodDescription descriptionOf(const Method& method, bool isShared) {
    MethodDescription description = descriptionOf(method.declaration);
    description.isShared = isShared;
    description.isCallable = method.callable;
    return description;
}

PropertyDescription descriptionOf(const Property& property) {
    return {.name = property.name,
            .type = descriptionOf(property.type),
            .isReadable = property.getter != nullptr,
            .isWritable = property.setter != nullptr};
}

} // namespace

TypeDescription descriptionOf(const Type& type) {
    return {.name = nameOf(type), .isArray = type.isArray};
}

MethodDescription descriptionOf(const Declaration& declaration) {
    MethodDescription description{.name = declaration.name};
    for (const Parameter& parameter : declaration.parameters) {
        description.parameters.push_back({.name = parameter.name,
                                          .type = descriptionOf(parameter.type),
                                          .byRef = parameter.byRef,
                                          .assigns = parameter.assigns,
                                          .defaultValue = parameter.defaultValue});
    }
    if (declaration.result) {
        description.result = descriptionOf(*declaration.result);
    }
    return description;
}

ClassDescription descriptionOf(const HostClass& type) {
    ClassDescription description{.name = type.name};
    if (type.record->superName != nullptr) {
        description.super = type.record->superName;
    }
    for (const Method& method : type.methods) {
        description.methods.push_back(descriptionOf(method, false));
    }
    for (const Method& method : type.sharedMethods) {
        description.sharedMethods.push_back(descriptionOf(method, true));
    }
    for (const Property& property : type.properties) {
        description.properties.push_back(descriptionOf(property));
    }
    for (const Event& event : type.events) {
        MethodDescription like = descriptionOf(event.declaration);
        description.events.push_back({.name = std::move(like.name),
                                      .parameters = std::move(like.parameters),
                                      .result = std::move(like.result)});
    }
    for (const Constant& constant : type.constants) {
        description.constants.push_back({.name = constant.name, .value = constant.value});
    }
    return description;
}

} // namespace zqm::host
