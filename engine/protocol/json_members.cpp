#include "engine/protocol/json_members.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <set>
#include <utility>

namespace zqm::protocol {

using Json = nlohmann::json;

Json parseLine(std::string_view text) {
    require(text.find('\0') == std::string_view::npos);
    constexpr int kDeepest = 5;
    std::array<std::set<std::string>, kDeepest + 1> names;
    const auto watch = [&names](int depth, Json::parse_event_t event, Json& value) {
        require(depth <= kDeepest);
        const auto level = static_cast<std::size_t>(depth);
        if (event == Json::parse_event_t::object_start) {
            names.at(level).clear();
        } else if (event == Json::parse_event_t::key) {
            require(names.at(level - 1).insert(value.get<std::string>()).second);
        }
        return true;
    };
    Json value = Json::parse(text.begin(), text.end(), watch, false);
    require(!value.is_discarded());
    return value;
}

Json number(double value) {
    if (std::isnan(value)) {
        return nullptr;
    }
    constexpr double kLargest = std::numeric_limits<double>::max();
    return std::clamp(value, -kLargest, kLargest);
}

Json Members::take(const char* name) {
    const auto member = object_.find(name);
    require(member != object_.end());
    Json value = std::move(*member);
    object_.erase(member);
    return value;
}

Json Members::list(const char* name) {
    Json value = take(name);
    require(value.is_array());
    return value;
}

std::string Members::string(const char* name) {
    Json value = take(name);
    require(value.is_string());
    return std::move(value.get_ref<std::string&>());
}

std::string Members::nonEmpty(const char* name) {
    std::string value = string(name);
    require(!value.empty());
    return value;
}

std::string Members::fileName(const char* name) {
    std::string value = string(name);
    require(value != "." && value != ".." && value.find('/') == std::string::npos &&
            value.find('\0') == std::string::npos);
    return value;
}

std::uint64_t Members::natural(const char* name, std::uint64_t least, std::uint64_t most) {
    const Json value = take(name);
    require(value.is_number_unsigned());
    const auto result = value.get<std::uint64_t>();
    require(result >= least && result <= most);
    return result;
}

int Members::integer(const char* name) {
    const Json value = take(name);
    require(value.is_number_integer());
    require(!value.is_number_unsigned() ||
            value.get<std::uint64_t>() <= static_cast<std::uint64_t>(std::numeric_limits<int>::max()));
    const auto result = value.get<std::int64_t>();
    require(std::in_range<int>(result));
    return static_cast<int>(result);
}

double Members::real(const char* name) {
    const Json value = take(name);
    require(value.is_number() || value.is_null());
    return value.is_null() ? std::numeric_limits<double>::quiet_NaN() : value.get<double>();
}

bool Members::boolean(const char* name) {
    const Json value = take(name);
    require(value.is_boolean());
    return value.get<bool>();
}

} // namespace zqm::protocol
