#include "platform/universal_time.h"

#include <array>
#include <chrono>
#include <cstdio>

namespace zqm::platform {
namespace {

constexpr std::string_view kPattern = "0000-00-00 00:00:00 ?0000";
constexpr std::size_t kSign = kPattern.find('?');

// With these the year keeps its four digits in every time zone.
constexpr int kFirstYear = 1;
constexpr int kLastYear = 9998;

bool matchesPattern(std::string_view date) {
    if (date.size() != kPattern.size()) {
        return false;
    }
    for (std::size_t index = 0; index < date.size(); ++index) {
        const char given = date[index];
        const char wanted = kPattern[index];
        const bool isDigit = given >= '0' && given <= '9';
        const bool isSign = given == '+' || given == '-';
        if (!(wanted == '0' ? isDigit : wanted == '?' ? isSign : given == wanted)) {
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<std::string> universalTime(std::string_view date) {
    using namespace std::chrono;
    if (!matchesPattern(date)) {
        return std::nullopt;
    }
    const auto number = [date](std::size_t at, std::size_t count) {
        int value = 0;
        for (const char digit : date.substr(at, count)) {
            value = value * 10 + (digit - '0');
        }
        return value;
    };
    const int givenYear = number(0, 4);
    const year_month_day day(year(givenYear), month(static_cast<unsigned>(number(5, 2))),
                             std::chrono::day(static_cast<unsigned>(number(8, 2))));
    const hours hour(number(11, 2));
    const minutes minute(number(14, 2));
    const seconds second(number(17, 2));
    const hours zoneHour(number(kSign + 1, 2));
    const minutes zoneMinute(number(kSign + 3, 2));
    const bool isTime = hour < days(1) && minute < hours(1) &&
                        second <= minutes(1) && // a leap second included
                        zoneHour < days(1) && zoneMinute < hours(1);
    if (!day.ok() || givenYear < kFirstYear || givenYear > kLastYear || !isTime) {
        return std::nullopt;
    }
    const minutes zone = zoneHour + zoneMinute;
    const sys_seconds time = sys_days(day) + hour + minute + second - (date[kSign] == '-' ? -zone : zone);
    const sys_days wholeDays = floor<days>(time);
    const year_month_day universal(wholeDays);
    const hh_mm_ss clock(time - wholeDays);
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d +0000",
                  static_cast<int>(universal.year()), static_cast<unsigned>(universal.month()),
                  static_cast<unsigned>(universal.day()), static_cast<int>(clock.hours().count()),
                  static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
    return text.data();
}

} // namespace zqm::platform
