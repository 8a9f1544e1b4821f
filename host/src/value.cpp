#include "zqmhost/value.h"

#include "marshalling.h"
#include "zqmhost/errors.h"

namespace zqm::host {

namespace {

[[noreturn]] void failAs(const Value& value, const char* wanted) {
    throw CallError(std::string(wanted) + " asked for, but the value is " + describe(value));
}

} // namespace

bool Value::isNull() const {
    if (const auto* string = std::get_if<String>(&content_)) {
        return string->isNull();
    }
    if (const auto* object = std::get_if<Object>(&content_)) {
        return object->isNull();
    }
    return std::holds_alternative<std::monostate>(content_);
}

bool Value::asBool() const {
    if (const auto* flag = std::get_if<bool>(&content_)) {
        return *flag;
    }
    failAs(*this, "Boolean");
}

std::int64_t Value::asInteger() const {
    if (const auto* integer = std::get_if<std::int64_t>(&content_)) {
        return *integer;
    }
    failAs(*this, "Integer");
}

std::size_t Value::asSize() const {
    const std::int64_t integer = asInteger();
    if (integer < 0) {
        throw CallError(std::to_string(integer) + " is no size");
    }
    return static_cast<std::size_t>(integer);
}

double Value::asDouble() const {
    if (const auto* real = std::get_if<double>(&content_)) {
        return *real;
    }
    if (const auto* integer = std::get_if<std::int64_t>(&content_)) {
        return static_cast<double>(*integer);
    }
    failAs(*this, "Double");
}

std::string Value::asText() const {
    if (const auto* text = std::get_if<std::string>(&content_)) {
        return *text;
    }
    if (const auto* string = std::get_if<String>(&content_)) {
        return string->text();
    }
    if (isNull()) {
        return {};
    }
    failAs(*this, "String");
}

String Value::asString() const {
    if (const auto* string = std::get_if<String>(&content_)) {
        return *string;
    }
    if (isNull()) {
        return {};
    }
    failAs(*this, "host string");
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
