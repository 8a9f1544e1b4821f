#include "bridge/dates.h"

#include "plugin/host_handles.h"

#import <Foundation/Foundation.h>
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <optional>

namespace {

constexpr std::array kFields{"Year", "Month", "Day", "Hour", "Minute", "Second"};
using Fields = std::array<std::int64_t, kFields.size()>;

// The calendar repeats itself. Platforms need not come to an end over dates before the Common Era or far in
// the future, so those are converted in a cycle nearer by.
constexpr std::int64_t kYearsOfCycle = 400;
constexpr std::int64_t kDaysOfCycle = 146'097;
constexpr double kSecondsOfCycle = static_cast<double>(kDaysOfCycle) * 24 * 60 * 60;

// Nothing for a moment that is no count of seconds.
std::optional<Fields> calendarFields(NSDate* date) {
    const double interval = [date timeIntervalSinceReferenceDate];
    if (!(std::abs(interval) < 0x1p63)) {
        return std::nullopt;
    }
    constexpr double kFirstCycle = -4; // counted from the reference date: the years 401 to 800
    constexpr double kLastCycle = 19;  // the years 9601 to 10000
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

// Leaves the rest of a count in whole units, and adds the units to the next larger count. False where that
// is beyond any count.
bool carry(std::int64_t& count, std::int64_t unit, std::int64_t& larger) {
    const std::int64_t rest = count % unit + (count % unit < 0 ? unit : 0);
    const std::int64_t units = count / unit - (count % unit < 0 ? 1 : 0);
    count = rest;
    return !__builtin_add_overflow(larger, units, &larger);
}

NSDate* dateWithFields(const Fields& fields) {
    auto [year, month, day, hour, minute, second] = fields;
    std::int64_t cycle = 0;
    // What lies outside of the calendar counts on from there: month 13 is the next year's first.
    if (__builtin_sub_overflow(month, 1, &month) || __builtin_sub_overflow(day, 1, &day) ||
        !carry(second, 60, minute) || !carry(minute, 60, hour) || !carry(hour, 24, day) ||
        !carry(month, 12, year) || !carry(year, kYearsOfCycle, cycle) || !carry(day, kDaysOfCycle, cycle)) {
        return nil;
    }
    using namespace std::chrono;
    const sys_days firstOfMonth =
        std::chrono::year(static_cast<int>(year)) / std::chrono::month(static_cast<unsigned>(month + 1)) / 1;
    const year_month_day inCalendar = firstOfMonth + days(day);
    constexpr std::int64_t kFirstCycle = 1; // the years 400 to 799
    constexpr std::int64_t kLastCycle = 24; // the years 9600 to 9999, and some more
    const std::int64_t nearby = std::clamp(cycle, kFirstCycle, kLastCycle);
    const auto nearbyYear = nearby * kYearsOfCycle + static_cast<int>(inCalendar.year());
    NSDate* date = [NSCalendarDate dateWithYear:static_cast<NSInteger>(nearbyYear)
                                          month:static_cast<unsigned>(inCalendar.month())
                                            day:static_cast<unsigned>(inCalendar.day())
                                           hour:static_cast<NSUInteger>(hour)
                                         minute:static_cast<NSUInteger>(minute)
                                         second:static_cast<NSUInteger>(second)
                                       timeZone:[NSTimeZone localTimeZone]];
    if (date == nil || cycle == nearby) {
        return date;
    }
    const double interval = [date timeIntervalSinceReferenceDate];
    const double shift = static_cast<double>(cycle - nearby) * kSecondsOfCycle;
    return [[[NSDate alloc] initWithTimeIntervalSinceReferenceDate:interval + shift] autorelease];
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
    return dateWithFields(fields);
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
