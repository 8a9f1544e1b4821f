#include "engine/listening/spoken_number.h"

#include "engine/text/characters.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <unicode/locid.h>
#include <unicode/rbnf.h>

namespace zqm::engine {

namespace {

using Readings = std::vector<Reading>;

constexpr std::size_t kLongestNumber = 15; // digits; longer ones are no amounts that people name
constexpr std::size_t kLongestPlain = 6;   // digits that are said as one number where it isn't round
constexpr std::int64_t kHundred = 100;
constexpr std::size_t kLongestGiven = 4; // digits that are also said one by one, or in pairs

bool isPlainDigit(char32_t character) {
    return character >= U'0' && character <= U'9';
}

Reading words(std::string text) {
    std::replace(text.begin(), text.end(), '-', ' ');
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

Reading operator+(Reading left, const Reading& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

// Each with each.
Readings operator*(const Readings& left, const Readings& right) {
    Readings readings;
    for (const Reading& first : left) {
        for (const Reading& second : right) {
            readings.push_back(first + second);
        }
    }
    return readings;
}

void add(Readings& readings, const Readings& more) {
    for (const Reading& reading : more) {
        if (std::find(readings.begin(), readings.end(), reading) == readings.end()) {
            readings.push_back(reading);
        }
    }
}

Reading spellOut(std::int64_t number, const char* rules) {
    static const std::unique_ptr<icu::RuleBasedNumberFormat> kFormat = [] {
        UErrorCode status = U_ZERO_ERROR;
        auto format =
            std::make_unique<icu::RuleBasedNumberFormat>(icu::URBNF_SPELLOUT, icu::Locale::getUS(), status);
        if (U_FAILURE(status)) {
            throw std::runtime_error(std::string("ICU can't spell numbers: ") + u_errorName(status));
        }
        return format;
    }();
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString text;
    icu::FieldPosition position;
    kFormat->format(number, icu::UnicodeString(rules), text, position, status);
    std::string bytes;
    text.toUTF8String(bytes);
    return words(bytes);
}

Reading cardinal(std::int64_t number) {
    return spellOut(number, "%spellout-numbering");
}

std::int64_t value(std::string_view digits) {
    std::int64_t number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

// One by one; a zero may be called oh.
Readings digitByDigit(std::string_view digits) {
    Reading names;
    Reading withOh;
    for (const char digit : digits) {
        names.push_back(cardinal(digit - '0').front());
        withOh.push_back(digit == '0' ? "oh" : names.back());
    }
    Readings readings{names};
    add(readings, {withOh});
    return readings;
}

// The last two digits behind others: "thirty", "oh five".
Readings lastPair(std::string_view digits) {
    return digits.front() == '0' ? digitByDigit(digits) : Readings{cardinal(value(digits))};
}

Readings plainReadings(std::string_view digits) {
    if (digits.size() > 1 && digits.front() == '0') {
        Readings readings = digitByDigit(digits);
        if (digits.size() > 2 && digits.starts_with("00") && digits[2] != '0') {
            add(readings, Readings{{"double", "oh"}} * digitByDigit(digits.substr(2)));
        }
        return readings;
    }
    const std::int64_t number = value(digits);
    Readings readings;
    if (digits.size() == kLongestGiven && digits[1] != '0') {
        readings.push_back(spellOut(number, "%spellout-numbering-year"));
    }
    add(readings, {cardinal(number)});
    if (digits.size() > 2 && digits.size() <= kLongestGiven) {
        add(readings, {spellOut(number, "%spellout-numbering-verbose")});
    }
    if (digits.size() == kLongestGiven) {
        add(readings, {spellOut(number, "%spellout-numbering-year")});
        add(readings, Readings{cardinal(number / kHundred)} * lastPair(digits.substr(2)));
    }
    if (digits.size() == 3 && !digits.ends_with("00")) {
        add(readings, Readings{cardinal(value(digits.substr(0, 1)))} * lastPair(digits.substr(1)));
    }
    if (digits.size() != 2 && (digits.size() <= kLongestGiven || !digits.ends_with("000"))) {
        add(readings, digitByDigit(digits));
    }
    return readings;
}

struct Currency {
    char32_t sign;
    const char* one;
    const char* many;
    const char* parts; // hundredths; null: none
};

constexpr std::array kCurrencies{
    Currency{U'$', "dollar", "dollars", "cents"},
    Currency{U'\u20AC', "euro", "euros", "cents"},
    Currency{U'\u00A3', "pound", "pounds", "pence"},
    Currency{U'\u00A5', "yen", "yen", nullptr},
};

// Reads one number. What begins as a longer form and doesn't end as one is read as a shorter one.
class Reader {
public:
    Reader(std::u32string_view text, std::size_t at) : text_(text), begin_(at), at_(at) {}

    std::optional<SpokenNumber> read() {
        const Currency* const currency = takeCurrency();
        if (!isPlainDigit(character())) {
            return std::nullopt;
        }
        // Inside a long one, whose first digits were read.
        if (begin_ == at_ && begin_ > 0 && isPlainDigit(text_[begin_ - 1])) {
            return firstDigit({static_cast<char>(character())});
        }
        const std::string digits = takeDigits();
        if (digits.size() > kLongestNumber) {
            return currency != nullptr ? std::nullopt : std::optional(firstDigit(digits));
        }
        if (currency != nullptr) {
            return result(amount(*currency, digits));
        }
        if (auto readings = time(digits)) {
            return result(std::move(*readings));
        }
        if (auto readings = fraction(digits)) {
            return result(std::move(*readings));
        }
        const std::string decimals = takeDecimals();
        if (!decimals.empty()) {
            return result(withDecimals(digits, decimals));
        }
        if (auto readings = ordinal(digits)) {
            return result(std::move(*readings));
        }
        if (isLong(digits)) {
            return firstDigit(digits);
        }
        return result(takeSuffix(U"s") ? plural(plainReadings(digits)) : plainReadings(digits));
    }

private:
    [[nodiscard]] char32_t character(std::size_t ahead = 0) const {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : U'\0';
    }

    [[nodiscard]] SpokenNumber result(Readings readings) const { return {at_ - begin_, std::move(readings)}; }

    SpokenNumber firstDigit(const std::string& digits) const {
        return {1, digitByDigit(digits.substr(0, 1))};
    }

    const Currency* takeCurrency() {
        const auto* const found =
            std::find_if(kCurrencies.begin(), kCurrencies.end(),
                         [&](const Currency& currency) { return currency.sign == character(); });
        if (found == kCurrencies.end()) {
            return nullptr;
        }
        ++at_;
        return found;
    }

    // With commas between groups of three.
    std::string takeDigits() {
        std::string digits = takePlainDigits();
        constexpr std::size_t kGroup = 3;
        while (digits.size() <= kLongestNumber && character() == U',' && digitsAhead(1) == kGroup) {
            ++at_;
            digits += takePlainDigits();
        }
        return digits;
    }

    std::string takePlainDigits() {
        std::string digits;
        for (; isPlainDigit(character()); ++at_) {
            digits += static_cast<char>(character());
        }
        return digits;
    }

    // As many as matter.
    [[nodiscard]] std::size_t digitsAhead(std::size_t ahead) const {
        std::size_t count = 0;
        while (count <= kLongestNumber && isPlainDigit(character(ahead + count))) {
            ++count;
        }
        return count;
    }

    // ".5", ".1.2" as in versions, but no endless ones; not the full stop of a sentence.
    std::string takeDecimals() {
        constexpr int kMostParts = 3;
        std::string decimals;
        for (int part = 0; part < kMostParts && character() == U'.' && digitsAhead(1) > 0 &&
                           digitsAhead(1) <= kLongestNumber;
             ++part) {
            ++at_;
            decimals += '.' + takePlainDigits();
        }
        return decimals;
    }

    bool takeSuffix(std::u32string_view suffix) {
        if (text_.substr(at_, suffix.size()) != suffix || isLetterOrNumber(character(suffix.size()))) {
            return false;
        }
        at_ += suffix.size();
        return true;
    }

    // One that can't be said as one number, or hardly.
    [[nodiscard]] static bool isLong(const std::string& digits) {
        return (digits.size() > kLongestPlain && (!digits.ends_with("000") || digits.front() == '0')) ||
               (digits.size() > kLongestGiven && digits.front() == '0');
    }

    std::optional<Readings> time(const std::string& digits) {
        constexpr std::int64_t kHours = 24;
        if (digits.size() > 2 || value(digits) >= kHours || character() != U':' || digitsAhead(1) != 2 ||
            character(1) > U'5' || character(3) == U':') {
            return std::nullopt;
        }
        ++at_;
        const std::string minutes = takePlainDigits();
        const Reading hour = cardinal(value(digits));
        if (minutes == "00") {
            return Readings{hour, hour + Reading{"o'clock"}, hour + Reading{"hundred"}};
        }
        Readings readings = Readings{hour} * lastPair(minutes);
        constexpr std::int64_t kNoon = 12;
        const Reading next = cardinal(value(digits) % kNoon + 1);
        if (minutes == "30") {
            add(readings, {Reading{"half", "past"} + hour});
        } else if (minutes == "15") {
            add(readings, {Reading{"quarter", "past"} + hour, Reading{"a", "quarter", "past"} + hour});
        } else if (minutes == "45") {
            add(readings, {Reading{"quarter", "to"} + next, Reading{"a", "quarter", "to"} + next});
        }
        return readings;
    }

    std::optional<Readings> fraction(const std::string& digits) {
        const bool isSlash = character() == U'/' || character() == U'\u2044';
        const std::size_t length = digitsAhead(1);
        if (!isSlash || digits.size() > 2 || length == 0 || length > 3 || character(1) == U'0' ||
            character(1 + length) == U'/') {
            return std::nullopt;
        }
        ++at_;
        const std::string below = takePlainDigits();
        const Reading count = cardinal(value(digits));
        const bool isOne = value(digits) == 1;
        const auto parts = [&](const Reading& name) {
            return isOne ? Readings{count + name, Reading{"a"} + name} : plural({count + name});
        };
        Readings readings;
        if (below == "2") {
            add(readings, parts({"half"}));
        } else if (below == "4") {
            add(readings, parts({"quarter"}));
        }
        if (value(below) > 2) {
            add(readings, parts(spellOut(value(below), "%spellout-ordinal")));
        }
        for (const char* const between : {"", "over", "slash", "of", "out of"}) {
            add(readings, {count + words(between) + cardinal(value(below))});
        }
        return readings;
    }

    std::optional<Readings> ordinal(const std::string& digits) {
        for (const std::u32string_view suffix : {U"st", U"nd", U"rd", U"th"}) {
            if (takeSuffix(suffix)) {
                Readings readings{spellOut(value(digits), "%spellout-ordinal")};
                add(readings, {spellOut(value(digits), "%spellout-ordinal-verbose")});
                return readings;
            }
        }
        return std::nullopt;
    }

    static Readings withDecimals(const std::string& digits, const std::string& decimals) {
        Readings readings{cardinal(value(digits))};
        for (std::size_t at = 0; at < decimals.size();) {
            const std::size_t end = std::min(decimals.find('.', at + 1), decimals.size());
            const std::string part = decimals.substr(at + 1, end - at - 1);
            Readings said = digitByDigit(part);
            if (part.size() == 2 && part.front() != '0') {
                add(said, {cardinal(value(part))});
            }
            readings = readings * (Readings{{"point"}} * said);
            constexpr std::size_t kMost = 12; // of a version with many parts
            readings.resize(std::min(readings.size(), kMost));
            at = end;
        }
        return readings;
    }

    Readings amount(const Currency& currency, const std::string& digits) {
        const bool hasParts = character() == U'.' && digitsAhead(1) == 2 && currency.parts != nullptr;
        const std::string decimals = takeDecimals();
        const Readings count{cardinal(value(digits))};
        const Readings unit{{digits == "1" ? currency.one : currency.many}};
        if (decimals.empty() || decimals == ".00") {
            return count * unit;
        }
        if (!hasParts) {
            return withDecimals(digits, decimals) * Readings{{currency.many}};
        }
        const Readings parts{cardinal(value(decimals.substr(1)))};
        Readings readings = count * unit * parts;
        add(readings, count * unit * parts * Readings{{currency.parts}});
        add(readings, count * unit * Readings{{"and"}} * parts * Readings{{currency.parts}});
        add(readings, count * lastPair(decimals.substr(1)));
        return readings;
    }

    static Readings plural(Readings readings) {
        for (Reading& reading : readings) {
            std::string& last = reading.back();
            if (last.ends_with('y')) {
                last.replace(last.size() - 1, 1, "ies");
            } else if (last == "half") {
                last = "halves";
            } else {
                last += last.ends_with('x') ? "es" : "s";
            }
        }
        return readings;
    }

    std::u32string_view text_;
    std::size_t begin_;
    std::size_t at_;
};

} // namespace

std::optional<SpokenNumber> numberAt(std::u32string_view text, std::size_t at) {
    return Reader(text, at).read();
}

} // namespace zqm::engine
