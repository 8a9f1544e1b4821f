#pragma once

#include "object_content.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

namespace zqm::host {

inline constexpr std::string_view kDateClass = "Date";

// Year, month, day, hour, minute, second as they were set, in the calendar or not.
struct DateContent final : ObjectContent {
    static constexpr const char* kWhat = "a Date";
    using Fields = std::array<std::int64_t, 6>;

    explicit DateContent(const Fields& itsFields) : fields(itsFields) {}
    // The present moment, in local time.
    static std::unique_ptr<ObjectContent> now();

    Fields fields;
};

} // namespace zqm::host
