#include "marshalling.h"

#include "array_content.h"
#include "core.h"
#include "text.h"
#include "variant_content.h"

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
           type.kind == TypeKind::Variant || type.kind == TypeKind::Object;
}

bool isVariant(const Type& type) {
    return !type.isArray && type.kind == TypeKind::Variant;
}

bool isWhole(TypeKind kind) {
    return kind == TypeKind::Integer || kind == TypeKind::Int32 || kind == TypeKind::UInt32;
}

// Whether the object may stand where that type is declared.
bool isOfType(Core& core, const Type& type, const ObjectHandle& object) {
    if (type.isArray) {
        const auto* array = object.contentAs<ArrayContent>();
        return array != nullptr && fits(array->type(), type);
    }
    const HostClass* wanted = core.classes().find(type.className);
    return isVariant(type) || (wanted != nullptr && object.type.isA(*wanted));
}

Fit fitOfObject(Core& core, const Type& type, const Object& object) {
    if (!type.isArray && type.kind != TypeKind::Object && type.kind != TypeKind::Variant) {
        return Fit::None;
    }
    const auto* handle = core.handles().known<ObjectHandle>(object.handle());
    if (object.isNull()) {
        return Fit::Exact;
    }
    if (handle == nullptr || !isOfType(core, type, *handle)) {
        return Fit::None;
    }
    const bool becomesVariant = isVariant(type) && handle->contentAs<VariantContent>() == nullptr;
    return becomesVariant ? Fit::Converted : Fit::Exact;
}

Fit fitOf(Core& core, const Type& type, const Value& value) {
    const bool plain = !type.isArray;
    const bool string = plain && type.kind == TypeKind::String;
    const bool text = plain && type.kind == TypeKind::Text;
    const bool real = plain && (type.kind == TypeKind::Double || type.kind == TypeKind::Single);
    const bool ptr = plain && type.kind == TypeKind::Ptr;
    // A Variant takes anything.
    const Fit other = isVariant(type) ? Fit::Converted : Fit::None;
    return std::visit(Overloaded{
                          [&](std::monostate) { return isHandle(type) || ptr ? Fit::Converted : Fit::None; },
                          [&](bool) { return plain && type.kind == TypeKind::Boolean ? Fit::Exact : other; },
                          [&](std::int64_t) {
                              if (plain && isWhole(type.kind)) {
                                  return Fit::Exact;
                              }
                              return real || ptr ? Fit::Converted : other;
                          },
                          [&](double) { return real ? Fit::Exact : other; },
                          [&](const std::string&) {
                              if (text) {
                                  return Fit::Converted;
                              }
                              return string ? Fit::Exact : other;
                          },
                          [&](const String&) { return string ? Fit::Exact : other; },
                          [&](const Text&) { return text ? Fit::Exact : other; },
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

// The value must fit the type. Handles made for it are added to `held`.
Slot slotOf(Core& core, const Type& type, const Value& value, std::vector<Value>& held) {
    Slot slot;
    if (isVariant(type)) {
        Object variant = core.boxed(value);
        slot.pointer = variant.handle();
        held.emplace_back(std::move(variant));
        return slot;
    }
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
                   [&](const std::string& utf8) {
                       if (type.kind == TypeKind::Text) {
                           Text text = core.makeText(utf8);
                           slot.pointer = text.handle();
                           held.emplace_back(std::move(text));
                       } else {
                           String string = core.makeString(utf8, encoding::kUtf8);
                           slot.pointer = string.handle();
                           held.emplace_back(std::move(string));
                       }
                   },
                   [&](const String& string) { slot.pointer = string.handle(); },
                   [&](const Text& text) { slot.pointer = text.handle(); },
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
    case TypeKind::Ptr:
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
    if (!type.isArray && type.kind == TypeKind::Text) {
        auto* text = static_cast<REALtext>(handle);
        return lock == Lock::Owned ? core.adopt(text, where) : core.borrow(text, where);
    }
    const auto* object = handle == nullptr ? nullptr : core.handles().find<ObjectHandle>(handle, where);
    if (object == nullptr) {
        return {};
    }
    if (!isOfType(core, type, *object)) {
        core.reports().add(Report::Kind::WrongKind,
                           std::string(where) + ": " + object->type.name + " instead of " + describe(type));
        return {};
    }
    auto* it = static_cast<REALobject>(handle);
    return lock == Lock::Owned ? core.adopt(it, where) : core.borrow(it, where);
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
                          [](const Text&) -> std::string { return "Text"; },
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
