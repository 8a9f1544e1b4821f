#include "zqmhost/value.h"

#include "marshalling.h"
#include "zqmhost/errors.h"

namespace zqm::host {

namespace {

[[noreturn]] void failAs(const Value& value, const char* wanted) {
    throw CallError(std::string(wanted) + " asked for, but the value is " + describe(value));
}

} // namespace

Value Value::unboxed() const {
    const auto* object = std::get_if<Object>(&content_);
    return object == nullptr || object->isNull() ? *this : object->variantValue();
}

bool Value::isNull() const {
    if (const auto* text = std::get_if<Text>(&content_)) {
        return text->isNull();
    }
    if (const auto* string = std::get_if<String>(&content_)) {
        return string->isNull();
    }
    if (const auto* object = std::get_if<Object>(&content_)) {
        return object->isNull();
    }
    return std::holds_alternative<std::monostate>(content_);
}

bool Value::asBool() const {
    const Value value = unboxed();
    if (const auto* flag = std::get_if<bool>(&value.content_)) {
        return *flag;
    }
    failAs(value, "Boolean");
}

std::int64_t Value::asInteger() const {
    const Value value = unboxed();
    if (const auto* integer = std::get_if<std::int64_t>(&value.content_)) {
        return *integer;
    }
    failAs(value, "Integer");
}

std::size_t Value::asSize() const {
    const std::int64_t integer = asInteger();
    if (integer < 0) {
        throw CallError(std::to_string(integer) + " is no size");
    }
    return static_cast<std::size_t>(integer);
}

double Value::asDouble() const {
    const Value value = unboxed();
    if (const auto* real = std::get_if<double>(&value.content_)) {
        return *real;
    }
    if (const auto* integer = std::get_if<std::int64_t>(&value.content_)) {
        return static_cast<double>(*integer);
    }
    failAs(value, "Double");
}

std::string Value::asText() const {
    const Value value = unboxed();
    if (const auto* text = std::get_if<std::string>(&value.content_)) {
        return *text;
    }
    if (const auto* string = std::get_if<String>(&value.content_)) {
        return string->text();
    }
    if (const auto* hostText = std::get_if<Text>(&value.content_)) {
        return hostText->text();
    }
    if (value.isNull()) {
        return {};
    }
    failAs(value, "String");
}

String Value::asString() const {
    const Value value = unboxed();
    if (const auto* string = std::get_if<String>(&value.content_)) {
        return *string;
    }
    if (value.isNull()) {
        return {};
    }
    failAs(value, "host string");
}

Text Value::asHostText() const {
    const Value value = unboxed();
    if (const auto* text = std::get_if<Text>(&value.content_)) {
        return *text;
    }
    if (value.isNull()) {
        return {};
    }
    failAs(value, "Text");
}

Object Value::asObject() const {
    if (const auto* object = std::get_if<Object>(&content_)) {
        return *object;
    }
    if (isNull()) {
        return {};
    }
    failAs(*this, "Object");
}

} // namespace zqm::host
