#include "bridge/dates.h"

#include "plugin/host_handles.h"

#import <Foundation/Foundation.h>
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace {

constexpr std::array kFields{"Year", "Month", "Day", "Hour", "Minute", "Second"};
using Fields = std::array<std::int64_t, kFields.size()>;

constexpr double kSecondsOfCycle = 146'097.0 * 24 * 60 * 60; // the calendar repeats itself
constexpr std::int64_t kYearsOfCycle = 400;
constexpr double kFirstCycle = -4; // counted from the reference date: the years 401 to 800
constexpr double kLastCycle = 19;  // the years 9601 to 10000

// Nothing for a moment that is no count of seconds. Calendars need not end when they are asked for the fields
// of dates before the Common Era or far in the future, so those are looked up in a cycle nearer by.
std::optional<Fields> calendarFields(NSDate* date) {
    const double interval = [date timeIntervalSinceReferenceDate];
    if (!(std::abs(interval) < 0x1p63)) {
        return std::nullopt;
    }
    const double cycle = std::floor(interval / kSecondsOfCycle);
    const double shift = cycle - std::clamp(cycle, kFirstCycle, kLastCycle);
    NSCalendarDate* calendarDate = [[[NSCalendarDate alloc]
        initWithTimeIntervalSinceReferenceDate:interval - shift * kSecondsOfCycle] autorelease];
    return Fields{[calendarDate yearOfCommonEra] + static_cast<std::int64_t>(shift) * kYearsOfCycle,
                  [calendarDate monthOfYear],
                  [calendarDate dayOfMonth],
                  [calendarDate hourOfDay],
                  [calendarDate minuteOfHour],
                  [calendarDate secondOfMinute]};
}

} // namespace

NSDate* NewNSDate(REALobject date) {
    if (date == nullptr) {
        return nil;
    }
    Fields fields{};
    for (std::size_t i = 0; i < kFields.size(); ++i) {
        if (!REALGetPropValueInteger(date, kFields[i], &fields[i])) {
            return nil;
        }
    }
    return [NSCalendarDate dateWithYear:static_cast<NSInteger>(fields[0])
                                  month:static_cast<NSUInteger>(fields[1])
                                    day:static_cast<NSUInteger>(fields[2])
                                   hour:static_cast<NSUInteger>(fields[3])
                                 minute:static_cast<NSUInteger>(fields[4])
                                 second:static_cast<NSUInteger>(fields[5])
                               timeZone:[NSTimeZone localTimeZone]];
}

REALobject newHostDate(NSDate* date) {
    const std::optional<Fields> found = calendarFields(date);
    if (!found) {
        return nullptr;
    }
    const Fields& fields = *found;
    OwnedObject result{REALnewInstance("Date")};
    if (!result) {
        return nullptr;
    }
    using Constructor = void (*)(REALobject, std::int64_t year, std::int64_t month, std::int64_t day,
                                 std::int64_t hour, std::int64_t minute, std::int64_t second);
    const auto construct = reinterpret_cast<Constructor>(REALLoadObjectMethod(
        result.get(), "Year as Integer, Month as Integer = 1, Day as Integer = 1, hour as Integer = 0, "
                      "minute as Integer = 0, second as Integer = 0"));
    if (construct != nullptr) {
        construct(result.get(), fields[0], fields[1], fields[2], fields[3], fields[4], fields[5]);
    } else {
        for (std::size_t i = 0; i < kFields.size(); ++i) {
            REALSetPropValueInteger(result.get(), kFields[i], fields[i]);
        }
    }
    return result.release();
}
