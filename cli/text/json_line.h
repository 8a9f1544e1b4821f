// What JSON lines of every command have in common.

#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace zqm::cli {

using Json = nlohmann::ordered_json;

// The value on one line. Bytes that are no UTF-8, of a file's name for example, become U+FFFD.
std::string lineOf(const Json& value);

// To the millisecond: no one hears more.
double rounded(double seconds);

} // namespace zqm::cli
