#include "variant_content.h"

#include "array_content.h"
#include "core.h"
#include "date_content.h"

#include <charconv>
#include <cmath>
#include <iomanip>
#include <limits>
#include <locale>
#include <optional>
#include <sstream>

namespace zqm::host {

namespace {

const ObjectHandle* handleIn(const Value& value) {
    const auto* object = std::get_if<Object>(&value.content());
    Core* core = Core::active();
    return object == nullptr || core == nullptr ? nullptr
                                                : core->handles().known<ObjectHandle>(object->handle());
}

// The text of a value that is one.
std::optional<std::string> textIn(const Value& value) {
    const bool text = std::holds_alternative<std::string>(value.content()) ||
                      std::holds_alternative<String>(value.content()) ||
                      std::holds_alternative<Text>(value.content());
    try {
        return text ? std::optional(value.asText()) : std::nullopt;
    } catch (const CallError&) {
        return std::string(); // bytes that are no text
    }
}

std::string withoutLeadingBlanks(const std::string& text) {
    const std::size_t start = text.find_first_not_of(" \t\r\n");
    return start == std::string::npos ? std::string() : text.substr(start);
}

// The number at the start of a text, in the notation of the language, whatever the locale.
double realAtStart(const std::string& text) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    double number = 0;
    stream >> number;
    return number;
}

std::int64_t nearestInteger(double number) {
    constexpr double kBeyond = 0x1p63;
    if (std::isnan(number)) {
        return 0;
    }
    if (number >= kBeyond) {
        return std::numeric_limits<std::int64_t>::max();
    }
    return number < -kBeyond ? std::numeric_limits<std::int64_t>::min() : static_cast<std::int64_t>(number);
}

std::int64_t integerAtStart(const std::string& text) {
    const std::string number = withoutLeadingBlanks(text);
    std::int64_t whole = 0;
    const char* end = number.data() + number.size();
    const auto [stop, error] = std::from_chars(number.data(), end, whole);
    const bool goesOn = stop != end && (*stop == '.' || *stop == 'e' || *stop == 'E');
    return error == std::errc() && !goesOn ? whole : nearestInteger(realAtStart(number));
}

// The shortest text that reads as the same number.
std::string textOf(double number) {
    std::string text;
    for (int digits = 15; digits <= 17; ++digits) {
        std::ostringstream stream;
        stream.imbue(std::locale::classic());
        stream << std::setprecision(digits) << number;
        text = stream.str();
        if (!std::isfinite(number) || realAtStart(text) == number) {
            break;
        }
    }
    return text;
}

} // namespace

const Value& innermost(const Value& value) {
    const Value* inner = &value;
    while (const ObjectHandle* handle = handleIn(*inner)) {
        const auto* content = handle->contentAs<VariantContent>();
        if (content == nullptr) {
            break;
        }
        inner = &content->value;
    }
    return *inner;
}

std::int32_t variantCode(const Value& value) {
    const auto& content = value.content();
    if (const ObjectHandle* handle = handleIn(value)) {
        return variantCode(*handle);
    }
    if (std::holds_alternative<bool>(content)) {
        return variant::kBoolean;
    }
    if (std::holds_alternative<std::int64_t>(content)) {
        return variant::kInteger;
    }
    if (std::holds_alternative<double>(content)) {
        return variant::kDouble;
    }
    if (std::holds_alternative<std::string>(content) || std::holds_alternative<String>(content)) {
        return variant::kString;
    }
    return std::holds_alternative<Text>(content) ? variant::kText : variant::kNil;
}

std::int32_t variantCode(const ObjectHandle& object) {
    if (const auto* variant = object.contentAs<VariantContent>()) {
        return variant->code;
    }
    if (const auto* array = object.contentAs<ArrayContent>()) {
        return variant::kArray + static_cast<std::int32_t>(array->type());
    }
    return object.contentAs<DateContent>() == nullptr ? variant::kObject : variant::kDate;
}

std::int64_t readInteger(const Value& value) {
    const Value& inner = innermost(value);
    const auto& content = inner.content();
    if (const auto* integer = std::get_if<std::int64_t>(&content)) {
        return *integer;
    }
    if (const auto text = textIn(inner)) {
        return integerAtStart(*text);
    }
    return nearestInteger(readReal(inner));
}

double readReal(const Value& value) {
    const Value& inner = innermost(value);
    const auto& content = inner.content();
    if (const auto* number = std::get_if<double>(&content)) {
        return *number;
    }
    if (const auto* integer = std::get_if<std::int64_t>(&content)) {
        return static_cast<double>(*integer);
    }
    if (const auto* flag = std::get_if<bool>(&content)) {
        return *flag ? 1 : 0;
    }
    const auto text = textIn(inner);
    return text ? realAtStart(*text) : 0;
}

String readString(Core& core, const Value& value) {
    const Value& inner = innermost(value);
    const auto& content = inner.content();
    if (const auto* string = std::get_if<String>(&content)) {
        return *string;
    }
    std::string text;
    if (const auto* number = std::get_if<double>(&content)) {
        text = textOf(*number);
    } else if (const auto* integer = std::get_if<std::int64_t>(&content)) {
        text = std::to_string(*integer);
    } else if (const auto* flag = std::get_if<bool>(&content)) {
        text = *flag ? "True" : "False";
    } else if (const auto written = textIn(inner)) {
        text = *written;
    } else {
        return {};
    }
    return core.makeString(text, encoding::kUtf8);
}

} // namespace zqm::host
