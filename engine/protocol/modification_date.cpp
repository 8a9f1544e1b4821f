#include "engine/protocol/modification_date.h"

#include <charconv>
#include <chrono>

namespace zqm::protocol {

namespace {

// Reads a text of a fixed layout from its beginning to its end.
class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    // A number of so many digits, which may be none beyond the last.
    int number(std::size_t digits, int last) {
        const std::string_view part = rest_.substr(0, digits);
        int value = 0;
        const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), value);
        isRight_ = isRight_ && part.size() == digits && error == std::errc() &&
                   end == part.data() + part.size() && value >= 0 && value <= last;
        rest_.remove_prefix(part.size());
        return value;
    }

    // One of these characters.
    char oneOf(std::string_view characters) {
        if (rest_.empty() || characters.find(rest_.front()) == std::string_view::npos) {
            isRight_ = false;
            return '\0';
        }
        const char found = rest_.front();
        rest_.remove_prefix(1);
        return found;
    }

    [[nodiscard]] bool hasEndedRight() const { return isRight_ && rest_.empty(); }

private:
    std::string_view rest_;
    bool isRight_ = true;
};

} // namespace

std::optional<std::int64_t> parseModificationDate(std::string_view date) {
    using namespace std::chrono;
    constexpr int kLastYear = 9999;
    constexpr int kLeapSecond = 60;
    Reader reader(date);
    const int yearNumber = reader.number(4, kLastYear);
    reader.oneOf("-");
    const int monthNumber = reader.number(2, 12);
    reader.oneOf("-");
    const int dayNumber = reader.number(2, 31);
    reader.oneOf(" ");
    const int hour = reader.number(2, 23);
    reader.oneOf(":");
    const int minute = reader.number(2, 59);
    reader.oneOf(":");
    const int second = reader.number(2, kLeapSecond);
    reader.oneOf(" ");
    const int sign = reader.oneOf("+-") == '-' ? -1 : 1;
    const int zoneHours = reader.number(2, 23);
    const int zoneMinutes = reader.number(2, 59);

    const year_month_day day(year(yearNumber), month(static_cast<unsigned>(monthNumber)),
                             std::chrono::day(static_cast<unsigned>(dayNumber)));
    if (!reader.hasEndedRight() || !day.ok()) {
        return std::nullopt;
    }
    const auto local = sys_days(day) + hours(hour) + minutes(minute) + seconds(second);
    return (local - sign * (hours(zoneHours) + minutes(zoneMinutes))).time_since_epoch().count();
}

} // namespace zqm::protocol
