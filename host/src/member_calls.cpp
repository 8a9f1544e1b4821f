// Methods, properties and event handlers, as host code uses them.

#include "class_describer.h"
#include "core.h"
#include "event_closure.h"
#include "marshalling.h"
#include "text.h"

#include <algorithm>
#include <utility>

namespace zqm::host {

namespace {

std::string member(const HostClass& type, std::string_view name) {
    return type.name + '.' + std::string(name);
}

std::size_t requiredCount(const Declaration& declaration) {
    return static_cast<std::size_t>(
        std::ranges::count_if(declaration.parameters, [](const Parameter& parameter) {
            return !parameter.defaultValue.has_value();
        }));
}

// How many arguments fit exactly; nothing when one doesn't fit at all.
std::optional<std::size_t> exactFits(Core& core, const Declaration& declaration,
                                     const std::vector<Value>& values) {
    if (values.size() > declaration.parameters.size() || values.size() < requiredCount(declaration)) {
        return std::nullopt;
    }
    std::size_t exact = 0;
    for (std::size_t index = 0; index < values.size(); ++index) {
        const Fit fit = fitOf(core, declaration.parameters[index], values[index]);
        if (fit == Fit::None) {
            return std::nullopt;
        }
        exact += fit == Fit::Exact ? 1 : 0;
    }
    return exact;
}

std::string described(const std::vector<Value>& values) {
    std::string result;
    for (const Value& value : values) {
        result += (result.empty() ? "" : ", ") + describe(value);
    }
    return '(' + result + ')';
}

const Method& requireCallable(const Method& method, const std::string& name) {
    if (!method.callable) {
        throw CallError(name + " can't be called by host code");
    }
    return method;
}

const Method& chooseOverload(Core& core, const std::vector<const Method*>& candidates,
                             const std::string& name, const std::vector<Value>& values) {
    if (candidates.empty()) {
        throw CallError("there is no method " + name);
    }
    const Method* best = nullptr;
    std::size_t bestExact = 0;
    bool ambiguous = false;
    for (const Method* candidate : candidates) {
        const auto exact = exactFits(core, candidate->declaration, values);
        if (!exact) {
            continue;
        }
        if (best == nullptr || *exact > bestExact) {
            best = candidate;
            bestExact = *exact;
            ambiguous = false;
        } else if (*exact == bestExact) {
            ambiguous = true;
        }
    }
    if (best == nullptr) {
        std::string forms;
        for (const Method* candidate : candidates) {
            forms += (forms.empty() ? "" : "; ") + describe(candidate->declaration);
        }
        throw CallError(name + described(values) + " fits no declaration: " + forms);
    }
    if (ambiguous) {
        throw CallError(name + described(values) + " fits more than one declaration alike");
    }
    return requireCallable(*best, name);
}

bool hasParametersOf(const Declaration& declaration, const MethodDescription& method) {
    return std::ranges::equal(descriptionOf(declaration).parameters, method.parameters,
                              [](const ParameterDescription& one, const ParameterDescription& other) {
                                  return sameName(one.type.name, other.type.name) &&
                                         one.type.isArray == other.type.isArray && one.byRef == other.byRef;
                              });
}

const Method& describedOverload(Core& core, const std::vector<const Method*>& candidates,
                                const std::string& name, const MethodDescription& method,
                                const std::vector<Value>& values) {
    const auto found = std::ranges::find_if(
        candidates, [&](const Method* candidate) { return hasParametersOf(candidate->declaration, method); });
    if (found == candidates.end()) {
        throw CallError("there is no method " + name + " declared as " + declaration(method));
    }
    if (!exactFits(core, (*found)->declaration, values)) {
        throw CallError(name + described(values) + " doesn't fit " + declaration(method));
    }
    return requireCallable(**found, name);
}

const Property& requireProperty(const Core& core, const HostClass& type, std::string_view name) {
    const Property* property = core.classes().findProperty(type, name);
    if (property == nullptr) {
        throw CallError("there is no property " + member(type, name));
    }
    return *property;
}

} // namespace

Value Core::invoke(const Method& method, REALobject self, const std::vector<Value>& values) {
    const std::string where = "method " + inQuotes(method.declaration.name);
    MarshalledArguments arguments(*this);
    if (self != nullptr) {
        arguments.addPointer(self);
    }
    const auto& parameters = method.declaration.parameters;
    for (std::size_t index = 0; index < parameters.size(); ++index) {
        if (index < values.size()) {
            arguments.add(parameters[index], values[index]);
        } else {
            arguments.addDefault(parameters[index]);
        }
    }
    Slot result;
    guarded([&] {
        result = method.type->call(method.function, arguments.slots());
        arguments.takeBack(where);
    });
    return method.declaration.result ? ownedValue(*this, *method.declaration.result, result, where) : Value();
}

Value Core::call(ObjectHandle& object, std::string_view name, const std::vector<Value>& values) {
    // A handler that runs during the call may drop the caller's lock.
    const Object kept = borrow(object.handle(), name);
    const std::string full = member(object.type, name);
    return invoke(chooseOverload(*this, findMethods(object.type, name), full, values), object.handle(),
                  values);
}

Value Core::callDescribed(ObjectHandle& object, const MethodDescription& method,
                          const std::vector<Value>& values) {
    const Object kept = borrow(object.handle(), method.name);
    const std::string full = member(object.type, method.name);
    return invoke(describedOverload(*this, findMethods(object.type, method.name), full, method, values),
                  object.handle(), values);
}

Value Core::callShared(const HostClass& type, std::string_view name, const std::vector<Value>& values) {
    const std::string full = member(type, name);
    return invoke(chooseOverload(*this, findSharedMethods(type, name), full, values), nullptr, values);
}

Value Core::callSharedDescribed(const HostClass& type, const MethodDescription& method,
                                const std::vector<Value>& values) {
    const std::string full = member(type, method.name);
    return invoke(describedOverload(*this, findSharedMethods(type, method.name), full, method, values),
                  nullptr, values);
}

Value Core::getProperty(ObjectHandle& object, std::string_view name) {
    const Property& property = requireProperty(*this, object.type, name);
    if (property.kept) {
        const auto& kept = std::as_const(object).members().kept;
        const auto found = kept.find(lowered(property.name));
        if (found != kept.end()) {
            return found->second;
        }
        return property.type.kind == TypeKind::Integer ? Value(0) : Value(String());
    }
    if (property.getter == nullptr) {
        throw CallError("property " + member(object.type, name) + " can't be read");
    }
    const Object self = borrow(object.handle(), name);
    MarshalledArguments arguments(*this);
    arguments.addPointer(self.handle());
    arguments.addInteger(property.parameter);
    Slot result;
    guarded([&] { result = property.getterType->call(property.getter, arguments.slots()); });
    return ownedValue(*this, property.type, result, "property " + inQuotes(property.name));
}

void Core::setProperty(ObjectHandle& object, std::string_view name, const Value& value) {
    const Property& property = requireProperty(*this, object.type, name);
    const Parameter parameter{property.name, property.type, false, false, std::nullopt};
    if (fitOf(*this, parameter, value) == Fit::None) {
        throw CallError(describe(value) + " given for property " + member(object.type, name) + ", which is " +
                        describe(property.type));
    }
    if (property.kept) {
        const auto* text = std::get_if<std::string>(&value.content());
        object.members().kept[lowered(property.name)] =
            text ? Value(makeString(*text, encoding::kUtf8)) : value;
        return;
    }
    if (property.setter == nullptr) {
        throw CallError("property " + member(object.type, name) + " is read-only");
    }
    const Object self = borrow(object.handle(), name);
    MarshalledArguments arguments(*this);
    arguments.addPointer(self.handle());
    arguments.addInteger(property.parameter);
    arguments.add(parameter, value);
    guarded([&] { property.setterType->call(property.setter, arguments.slots()); });
}

const Event& Core::requireEvent(const ObjectHandle& object, std::string_view name) const {
    const Event* event = findEvent(object.type, name);
    if (event == nullptr) {
        throw CallError("there is no event " + member(object.type, name));
    }
    return *event;
}

void Core::setHandler(ObjectHandle& object, std::string_view name, EventHandler handler) {
    const Event& event = requireEvent(object, name);
    auto& handlers = object.members().handlers;
    auto& slot = handlers[event.token];
    auto before = std::move(slot);
    if (handler) {
        slot = std::make_shared<EventClosure>(*this, event, std::move(handler));
    } else {
        handlers.erase(event.token);
    }
    if (before != nullptr) {
        retire(std::move(before));
    }
}

} // namespace zqm::host
