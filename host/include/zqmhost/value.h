#pragma once

#include "zqmhost/object.h"
#include "zqmhost/string.h"
#include "zqmhost/text.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace zqm::host {

class Value;

// An argument by reference: the plugin reads and may replace what the value holds. A null one passes a null
// address.
struct ByRef {
    Value* slot = nullptr;
};

// What is passed to a plugin's functions and comes back from them. Texts passed in are UTF-8; a result is
// a host string, which keeps its bytes and encoding. A typed nil, String() or Object(), tells overloads apart
// that differ in the type of an argument. Arrays, dates, dictionaries and the like are objects; a Ptr is an
// integer, its address. Where a Variant is wanted any value is put into one.
class Value {
public:
    Value() = default; // nil of any kind
    // Each kind of value.
    Value(std::nullptr_t) {}
    Value(bool value) : content_(value) {}
    template <std::integral Integer>
    requires(!std::same_as<Integer, bool>) Value(Integer value)
        : content_(static_cast<std::int64_t>(value)) {}
    template <std::floating_point Real>
    Value(Real value) : content_(static_cast<double>(value)) {}
    Value(const char* text) : content_(std::string(text)) {}
    Value(std::string_view text) : content_(std::string(text)) {}
    Value(std::string text) : content_(std::move(text)) {}
    Value(String string) : content_(std::move(string)) {}
    Value(Text text) : content_(std::move(text)) {}
    Value(Object object) : content_(std::move(object)) {}
    Value(ByRef reference) : content_(reference) {}

    // A nil string, text or object also counts.
    bool isNull() const;

    // Each throws CallError when the value is of another kind; asDouble() also takes an integer, asText()
    // and asObject() take nil. All but asObject() look into a Variant.
    bool asBool() const;
    std::int64_t asInteger() const;
    std::size_t asSize() const; // an integer that is not negative
    double asDouble() const;
    std::string asText() const; // UTF-8
    String asString() const;    // a host string; not for text that never was one
    Text asHostText() const;    // a text handle of the host
    Object asObject() const;

    using Content =
        std::variant<std::monostate, bool, std::int64_t, double, std::string, String, Text, Object, ByRef>;
    // Of whatever kind it is.
    const Content& content() const { return content_; }

private:
    Value unboxed() const;

    Content content_;
};

// What an event handler is given: the object that raises it, and the event's arguments in the order of its
// declaration.
class Arguments {
public:
    // Of an event that the object raises.
    Arguments(Object sender, std::vector<Value> values)
        : sender_(std::move(sender)), values_(std::move(values)) {}

    // While the handler runs it is the plugin's lock that keeps the object alive, none of the host's; a copy
    // holds a lock of its own.
    const Object& sender() const { return sender_; }
    std::size_t size() const { return values_.size(); }
    const Value& operator[](std::size_t index) const { return values_.at(index); }

private:
    friend class EventClosure;

    Object sender_;
    std::vector<Value> values_;
};

template <typename... Values>
Value Object::call(std::string_view method, Values&&... values) {
    return callWith(method, {Value(std::forward<Values>(values))...});
}

} // namespace zqm::host
