// Variants: what is in them, and how it reads as something else.

#pragma once

#include "object_content.h"
#include "zqmhost/value.h"

#include <cstdint>
#include <string_view>

namespace zqm::host {

class Core;
struct ObjectHandle;

inline constexpr std::string_view kVariantClass = "Variant";

// Codes of the types a Variant can be of. Those of arrays are kArray and the code of the elements.
namespace variant {
inline constexpr std::int32_t kNil = 0;
inline constexpr std::int32_t kInteger = 2;
inline constexpr std::int32_t kInt64 = 3;
inline constexpr std::int32_t kSingle = 4;
inline constexpr std::int32_t kDouble = 5;
inline constexpr std::int32_t kDate = 7;
inline constexpr std::int32_t kString = 8;
inline constexpr std::int32_t kObject = 9;
inline constexpr std::int32_t kBoolean = 11;
inline constexpr std::int32_t kText = 37;
inline constexpr std::int32_t kArray = 4096;
} // namespace variant

struct VariantContent final : ObjectContent {
    static constexpr const char* kWhat = "a Variant";
    VariantContent(std::int32_t itsCode, Value itsValue) : code(itsCode), value(std::move(itsValue)) {}

    std::int32_t code;
    Value value; // texts of the C++ API are host strings in it
};

// Of what is put into a Variant, and of any object as it stands.
std::int32_t variantCode(const Value& value);
std::int32_t variantCode(const ObjectHandle& object);

// What is in a Variant, also in one inside of another; what is none stays as it is.
const Value& innermost(const Value& value);

// What can't be read as that is 0 or the empty text. Numbers that don't fit become the nearest.
std::int64_t readInteger(const Value& value);
double readReal(const Value& value);
// A string in it as it stands, else a new one; nil for what is no text, number or Boolean.
String readString(Core& core, const Value& value);

} // namespace zqm::host
