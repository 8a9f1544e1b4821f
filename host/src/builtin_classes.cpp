#include "builtin_classes.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace zqm::host {

namespace {

struct BuiltinClass {
    std::string_view name;
    std::string_view super; // stands before it; empty: none
};
constexpr std::array kClasses{
    BuiltinClass{"RuntimeException", ""},
    BuiltinClass{"IllegalCastException", "RuntimeException"},
    BuiltinClass{"KeyNotFoundException", "RuntimeException"},
    BuiltinClass{"NilObjectException", "RuntimeException"},
    BuiltinClass{"OutOfBoundsException", "RuntimeException"},
    BuiltinClass{"OutOfMemoryException", "RuntimeException"},
    BuiltinClass{"TypeMismatchException", "RuntimeException"},
    BuiltinClass{"UnsupportedFormatException", "RuntimeException"},
    BuiltinClass{"UnsupportedOperationException", "RuntimeException"},
};

struct BuiltinProperty {
    std::string_view ofClass;
    std::string_view name;
    TypeKind type;
};
constexpr std::array kProperties{
    BuiltinProperty{"RuntimeException", "Message", TypeKind::String},
    BuiltinProperty{"RuntimeException", "ErrorNumber", TypeKind::Integer},
};

} // namespace

void addBuiltinClasses(std::deque<HostClass>& classes) {
    for (const BuiltinClass& builtin : kClasses) {
        const auto super = std::ranges::find(classes, builtin.super, &HostClass::name);
        const HostClass* superClass = super == classes.end() ? nullptr : &*super;
        HostClass& type = classes.emplace_back();
        type.name = builtin.name;
        type.super = superClass;
        for (const BuiltinProperty& builtinProperty : kProperties) {
            if (builtinProperty.ofClass == builtin.name) {
                Property property;
                property.name = builtinProperty.name;
                property.type.kind = builtinProperty.type;
                property.kept = true;
                type.properties.push_back(std::move(property));
            }
        }
    }
}

} // namespace zqm::host
