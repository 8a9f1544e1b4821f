// What the type codes of Variants stand for, as the documentation of the bridge lists them.

#pragma once

#include <array>
#include <string>

namespace zqm::bridge::test {

enum class Kind { Long, LongLong, Float, Double, Bool, Date, String, Object };

struct DocumentedCode {
    int code;
    Kind kind;
};

// Every other code below those of arrays is nil.
inline constexpr std::array kDocumentedCodes = std::to_array<DocumentedCode>({
    {2, Kind::Long},
    {3, Kind::LongLong},
    {4, Kind::Float},
    {5, Kind::Double},
    {6, Kind::Double},
    {7, Kind::Date},
    {8, Kind::String},
    {9, Kind::Object},
    {11, Kind::Bool},
    {16, Kind::Long},
    {18, Kind::String},
    {19, Kind::String},
    {20, Kind::String},
    {21, Kind::String},
    {23, Kind::String},
    {37, Kind::String},
});

// Every other code from 4098 upwards is nil.
inline constexpr std::array kDocumentedArrayCodes = std::to_array<int>({
    4098,
    4099,
    4100,
    4101,
    4103,
    4104,
    4105,
    4107,
    4133,
});

} // namespace zqm::bridge::test
