#include "marshalling.h"

#include "core.h"
#include "text.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

namespace zqm::host {

namespace {

template <typename... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

bool isHandle(const Type& type) {
    return type.isArray || type.kind == TypeKind::String || type.kind == TypeKind::Text ||
           type.kind == TypeKind::Variant || type.kind == TypeKind::Ptr || type.kind == TypeKind::Object;
}

bool isWhole(TypeKind kind) {
    return kind == TypeKind::Integer || kind == TypeKind::Int32 || kind == TypeKind::UInt32;
}

Fit fitOfObject(Core& core, const Type& type, const Object& object) {
    if (type.isArray || (type.kind != TypeKind::Object && type.kind != TypeKind::Variant)) {
        return Fit::None;
    }
    if (object.isNull() || type.kind == TypeKind::Variant) {
        return Fit::Exact;
    }
    const HostClass* wanted = core.classes().find(type.className);
    const auto* handle = core.handles().known<ObjectHandle>(object.handle());
    return wanted != nullptr && handle != nullptr && handle->type.isA(*wanted) ? Fit::Exact : Fit::None;
}

Fit fitOf(Core& core, const Type& type, const Value& value) {
    const bool text = !type.isArray && type.kind == TypeKind::String;
    const bool plain = !type.isArray;
    return std::visit(
        Overloaded{
            [&](std::monostate) { return isHandle(type) ? Fit::Converted : Fit::None; },
            [&](bool) { return plain && type.kind == TypeKind::Boolean ? Fit::Exact : Fit::None; },
            [&](std::int64_t) {
                if (plain && isWhole(type.kind)) {
                    return Fit::Exact;
                }
                const bool real = plain && (type.kind == TypeKind::Double || type.kind == TypeKind::Single);
                return real ? Fit::Converted : Fit::None;
            },
            [&](double) {
                const bool real = plain && (type.kind == TypeKind::Double || type.kind == TypeKind::Single);
                return real ? Fit::Exact : Fit::None;
            },
            [&](const std::string&) { return text ? Fit::Exact : Fit::None; },
            [&](const String&) { return text ? Fit::Exact : Fit::None; },
            [&](const Object& object) { return fitOfObject(core, type, object); },
            [&](ByRef) { return Fit::None; },
        },
        value.content());
}

template <typename Integer>
Integer narrowed(std::int64_t value) {
    if (value < std::numeric_limits<Integer>::min() || value > std::numeric_limits<Integer>::max()) {
        throw CallError(std::to_string(value) + " is out of the range of its parameter");
    }
    return static_cast<Integer>(value);
}

// The value must fit the type. Made strings are added to `held`.
Slot slotOf(Core& core, const Type& type, const Value& value, std::vector<Value>& held) {
    Slot slot;
    std::visit(Overloaded{
                   [&](std::monostate) { slot.pointer = nullptr; },
                   [&](bool flag) { slot.boolean = flag; },
                   [&](std::int64_t integer) {
                       if (type.kind == TypeKind::Int32) {
                           slot.int32 = narrowed<std::int32_t>(integer);
                       } else if (type.kind == TypeKind::UInt32) {
                           slot.uint32 = narrowed<std::uint32_t>(integer);
                       } else if (type.kind == TypeKind::Double) {
                           slot.real = static_cast<double>(integer);
                       } else if (type.kind == TypeKind::Single) {
                           slot.single = static_cast<float>(integer);
                       } else {
                           slot.integer = integer;
                       }
                   },
                   [&](double real) {
                       if (type.kind == TypeKind::Single) {
                           slot.single = static_cast<float>(real);
                       } else {
                           slot.real = real;
                       }
                   },
                   [&](const std::string& text) {
                       String string = core.makeString(text, encoding::kUtf8);
                       slot.pointer = string.handle();
                       held.emplace_back(std::move(string));
                   },
                   [&](const String& string) { slot.pointer = string.handle(); },
                   [&](const Object& object) { slot.pointer = object.handle(); },
                   [&](ByRef) {},
               },
               value.content());
    return slot;
}

Value scalarValue(const Type& type, const Slot& slot) {
    switch (type.kind) {
    case TypeKind::Boolean:
        return (slot.integer & 0xFF) != 0; // the low byte counts, whatever stands above it
    case TypeKind::Int32:
        return slot.int32;
    case TypeKind::UInt32:
        return slot.uint32;
    case TypeKind::Integer:
        return slot.integer;
    case TypeKind::Single:
        return slot.single;
    case TypeKind::Double:
        return slot.real;
    default:
        return {};
    }
}

enum class Lock { Owned, Borrowed };

Value handleValue(Core& core, const Type& type, void* handle, Lock lock, std::string_view where) {
    if (!type.isArray && type.kind == TypeKind::String) {
        auto* string = static_cast<REALstring>(handle);
        return lock == Lock::Owned ? core.adopt(string, where) : core.borrow(string, where);
    }
    if (!type.isArray && (type.kind == TypeKind::Object || type.kind == TypeKind::Variant)) {
        auto* object = static_cast<REALobject>(handle);
        return lock == Lock::Owned ? core.adopt(object, where) : core.borrow(object, where);
    }
    if (handle != nullptr) {
        core.reports().add(Report::Kind::ForeignHandle,
                           std::string(where) + ": never given out as " + describe(type));
    }
    return {};
}

} // namespace

Fit fitOf(Core& core, const Parameter& parameter, const Value& value) {
    const auto* reference = std::get_if<ByRef>(&value.content());
    if (!parameter.byRef) {
        return reference != nullptr ? Fit::None : fitOf(core, parameter.type, value);
    }
    if (reference == nullptr) {
        return Fit::None;
    }
    return reference->slot == nullptr ? Fit::Exact : fitOf(core, parameter.type, *reference->slot);
}

std::string describe(const Value& value) {
    return std::visit(Overloaded{
                          [](std::monostate) -> std::string { return "nil"; },
                          [](bool) -> std::string { return "Boolean"; },
                          [](std::int64_t) -> std::string { return "Integer"; },
                          [](double) -> std::string { return "Double"; },
                          [](const std::string&) -> std::string { return "String"; },
                          [](const String&) -> std::string { return "String"; },
                          [](const Object& object) {
                              return object.isNull() ? std::string("nil object") : object.className();
                          },
                          [](ByRef reference) {
                              return "byref " + (reference.slot == nullptr ? std::string("nothing")
                                                                           : describe(*reference.slot));
                          },
                      },
                      value.content());
}

MarshalledArguments::~MarshalledArguments() {
    for (const Reference& reference : references_) {
        if (isHandle(reference.type)) {
            core_->unlock(reference.type, reference.content.pointer);
        }
    }
}

void MarshalledArguments::addPointer(void* pointer) {
    slots_.emplace_back().pointer = pointer;
}

void MarshalledArguments::addInteger(std::int64_t integer) {
    slots_.emplace_back().integer = integer;
}

void MarshalledArguments::add(const Parameter& parameter, const Value& value) {
    if (fitOf(*core_, parameter, value) == Fit::None) {
        throw CallError(describe(value) + " given for " + inQuotes(parameter.name) + ", which is " +
                        (parameter.byRef ? "byref " : "") + describe(parameter.type));
    }
    held_.push_back(value);
    if (!parameter.byRef) {
        slots_.push_back(slotOf(*core_, parameter.type, value, held_));
        return;
    }
    Value* target = std::get<ByRef>(value.content()).slot;
    if (target == nullptr) {
        addPointer(nullptr);
        return;
    }
    // The plugin may replace the handle and unlock the one it finds, so the slot gets a lock of its own.
    Slot content = slotOf(*core_, parameter.type, *target, held_);
    if (isHandle(parameter.type)) {
        core_->lock(parameter.type, content.pointer);
    }
    references_.push_back({target, parameter.type, content});
    addPointer(&references_.back().content);
}

void MarshalledArguments::addDefault(const Parameter& parameter) {
    const std::string& literal = parameter.defaultValue.value();
    Value value;
    if (literal.front() == '"') {
        value = std::string_view(literal).substr(1, literal.size() - 2);
    } else if (sameName(literal, "true") || sameName(literal, "false")) {
        value = sameName(literal, "true");
    } else if (literal.find('.') != std::string::npos) {
        value = std::stod(literal);
    } else if (!sameName(literal, "nil")) {
        value = std::stoll(literal);
    }
    add(parameter, value);
}

void MarshalledArguments::takeBack(std::string_view where) {
    for (Reference& reference : references_) {
        *reference.target = ownedValue(*core_, reference.type, reference.content, where);
    }
    references_.clear();
}

Value ownedValue(Core& core, const Type& type, const Slot& slot, std::string_view where) {
    return isHandle(type) ? handleValue(core, type, slot.pointer, Lock::Owned, where)
                          : scalarValue(type, slot);
}

Value borrowedValue(Core& core, const Type& type, const void* argument, std::string_view where) {
    Slot slot;
    if (isHandle(type)) {
        return handleValue(core, type, *static_cast<void* const*>(argument), Lock::Borrowed, where);
    }
    switch (type.kind) {
    case TypeKind::Boolean:
        slot.integer = *static_cast<const std::uint8_t*>(argument);
        break;
    case TypeKind::Int32:
    case TypeKind::UInt32:
        slot.uint32 = *static_cast<const std::uint32_t*>(argument);
        break;
    case TypeKind::Single:
        slot.single = *static_cast<const float*>(argument);
        break;
    default:
        slot.integer = *static_cast<const std::int64_t*>(argument);
    }
    return scalarValue(type, slot);
}

} // namespace zqm::host
