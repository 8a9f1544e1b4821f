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

// The calendar repeats itself. Platforms need not come to an end over dates before the Common Era or far in
// the future, so those are converted in a cycle nearer by.
constexpr double kSecondsOfCycle = 146'097.0 * 24 * 60 * 60;
constexpr std::int64_t kYearsOfCycle = 400;

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

NSDate* dateWithFields(const Fields& fields) {
    constexpr std::int64_t kFirstCycle = 1; // the years 400 to 799
    constexpr std::int64_t kLastCycle = 24; // the years 9600 to 9999
    const std::int64_t year = fields[0];
    const std::int64_t cycle = year / kYearsOfCycle - (year % kYearsOfCycle < 0 ? 1 : 0);
    const std::int64_t nearby = std::clamp(cycle, kFirstCycle, kLastCycle);
    const std::int64_t yearOfCycle = (year % kYearsOfCycle + kYearsOfCycle) % kYearsOfCycle;
    NSDate* date = [NSCalendarDate dateWithYear:static_cast<NSInteger>(nearby * kYearsOfCycle + yearOfCycle)
                                          month:static_cast<NSUInteger>(fields[1])
                                            day:static_cast<NSUInteger>(fields[2])
                                           hour:static_cast<NSUInteger>(fields[3])
                                         minute:static_cast<NSUInteger>(fields[4])
                                         second:static_cast<NSUInteger>(fields[5])
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
