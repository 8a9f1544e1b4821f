#include "host_class.h"

#include "text.h"

#include <algorithm>
#include <optional>

namespace zqm::host {

namespace {

template <typename Members, typename Matches>
auto findMember(const HostClass& type, Members HostClass::*members, Matches matches) ->
    typename Members::const_pointer {
    for (const HostClass* one = &type; one != nullptr; one = one->super) {
        const auto found = std::ranges::find_if(one->*members, matches);
        if (found != (one->*members).end()) {
            return &*found;
        }
    }
    return nullptr;
}

std::vector<const Method*> overloads(const HostClass& type, std::vector<Method> HostClass::*methods,
                                     std::string_view name) {
    std::vector<const Method*> result;
    for (const HostClass* one = &type; one != nullptr; one = one->super) {
        for (const Method& method : one->*methods) {
            const bool hidden = std::ranges::any_of(result, [&](const Method* below) {
                return sameParameters(below->declaration, method.declaration);
            });
            if (!hidden && sameName(method.declaration.name, name)) {
                result.push_back(&method);
            }
        }
    }
    return result;
}

} // namespace

void addFunctionTypes(Property& property) {
    const FunctionType::Argument parameter{{TypeKind::Integer, "", false}, false};
    property.getterType =
        std::make_unique<FunctionType>(true, std::vector{parameter}, std::optional(property.type));
    property.setterType =
        std::make_unique<FunctionType>(true, std::vector{parameter, {property.type, false}}, std::nullopt);
}

const Property* findProperty(const HostClass& type, std::string_view name) {
    return findMember(type, &HostClass::properties,
                      [name](const Property& property) { return sameName(property.name, name); });
}

const Event* findEvent(const HostClass& type, std::string_view name) {
    return findMember(type, &HostClass::events,
                      [name](const Event& event) { return sameName(event.declaration.name, name); });
}

const Event* findEvent(const HostClass& type, std::uint64_t token) {
    return findMember(type, &HostClass::events, [token](const Event& event) { return event.token == token; });
}

const Constant* findConstant(const HostClass& type, std::string_view name) {
    return findMember(type, &HostClass::constants,
                      [name](const Constant& constant) { return sameName(constant.name, name); });
}

std::vector<const Method*> findMethods(const HostClass& type, std::string_view name) {
    return overloads(type, &HostClass::methods, name);
}

std::vector<const Method*> findSharedMethods(const HostClass& type, std::string_view name) {
    return overloads(type, &HostClass::sharedMethods, name);
}

} // namespace zqm::host
