#include "engine/listening/spoken_number.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

using namespace zqm::engine;
using testing::Contains;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;

namespace {

std::vector<std::string> readings(std::u32string_view text, std::size_t at = 0) {
    std::vector<std::string> joined;
    if (const auto number = numberAt(text, at)) {
        for (const Reading& words : number->readings) {
            std::string& line = joined.emplace_back();
            for (const std::string& word : words) {
                line += line.empty() ? word : ' ' + word;
            }
        }
    }
    return joined;
}

struct Number {
    const char32_t* text;
    std::size_t length;
    std::vector<std::string> readings; // all of them
};

void PrintTo(const Number& number, std::ostream* stream) {
    *stream << number.readings.front();
}

class NumberOfAText : public testing::TestWithParam<Number> {};

TEST_P(NumberOfAText, isSaidInTheseWays) {
    const Number& expected = GetParam();
    const auto number = numberAt(expected.text, 0);
    ASSERT_TRUE(number);
    EXPECT_EQ(number->length, expected.length);
    EXPECT_THAT(readings(expected.text), ElementsAreArray(expected.readings));
}

INSTANTIATE_TEST_SUITE_P(
    Usual, NumberOfAText,
    testing::Values(
        Number{U"5", 1, {"five"}}, Number{U"0", 1, {"zero", "oh"}}, Number{U"25", 2, {"twenty five"}},
        Number{U"25 ", 2, {"twenty five"}}, Number{U"05", 2, {"zero five", "oh five"}},
        Number{U"007", 3, {"zero zero seven", "oh oh seven", "double oh seven"}},
        Number{U"747",
               3,
               {"seven hundred forty seven", "seven hundred and forty seven", "seven forty seven",
                "seven four seven"}},
        Number{U"404", 3, {"four hundred four", "four hundred and four", "four zero four", "four oh four"}},
        Number{U"500", 3, {"five hundred", "five zero zero", "five oh oh"}},
        Number{U"1984",
               4,
               {"nineteen eighty four", "one thousand nine hundred eighty four",
                "one thousand nine hundred and eighty four", "one nine eight four"}},
        Number{U"2005",
               4,
               {"two thousand five", "two thousand and five", "twenty zero five", "twenty oh five",
                "two zero zero five", "two oh oh five"}},
        Number{U"10000", 5, {"ten thousand"}},
        Number{U"123456",
               6,
               {"one hundred twenty three thousand four hundred fifty six", "one two three four five six"}},
        Number{U"3000000", 7, {"three million"}}, Number{U"1,000,000", 9, {"one million"}},
        Number{U"1,234",
               5,
               {"twelve thirty four", "one thousand two hundred thirty four",
                "one thousand two hundred and thirty four", "one two three four"}}));

INSTANTIATE_TEST_SUITE_P(
    WithSigns, NumberOfAText,
    testing::Values(Number{U"3.5", 3, {"three point five"}},
                    Number{U"3.05", 4, {"three point zero five", "three point oh five"}},
                    Number{U"3.14", 4, {"three point one four", "three point fourteen"}},
                    Number{U"1.2.3", 5, {"one point two point three"}}, Number{U"3.", 1, {"three"}},
                    Number{U"1.2.3.4.5", 7, {"one point two point three point four"}},
                    Number{U"7:30", 4, {"seven thirty", "half past seven"}},
                    Number{U"7:05", 4, {"seven zero five", "seven oh five"}},
                    Number{U"9:15", 4, {"nine fifteen", "quarter past nine", "a quarter past nine"}},
                    Number{U"12:45", 5, {"twelve forty five", "quarter to one", "a quarter to one"}},
                    Number{U"8:00", 4, {"eight", "eight o'clock", "eight hundred"}},
                    Number{U"7:75", 1, {"seven"}}, Number{U"25:10", 2, {"twenty five"}},
                    Number{U"1:2", 1, {"one"}},
                    Number{U"1/2",
                           3,
                           {"one half", "a half", "one two", "one over two", "one slash two", "one of two",
                            "one out of two"}},
                    Number{U"3\u20444",
                           3,
                           {"three quarters", "three fourths", "three four", "three over four",
                            "three slash four", "three of four", "three out of four"}},
                    Number{U"24/7",
                           4,
                           {"twenty four sevenths", "twenty four seven", "twenty four over seven",
                            "twenty four slash seven", "twenty four of seven", "twenty four out of seven"}},
                    Number{U"$5", 2, {"five dollars"}}, Number{U"$1", 2, {"one dollar"}},
                    Number{U"$5.50",
                           5,
                           {"five dollars fifty", "five dollars fifty cents", "five dollars and fifty cents",
                            "five fifty"}},
                    Number{U"\u00A310.00", 6, {"ten pounds"}},
                    Number{U"\u20AC2.5", 4, {"two point five euros"}},
                    Number{U"\u00A5100", 4, {"one hundred yen"}}));

INSTANTIATE_TEST_SUITE_P(WithLetters, NumberOfAText,
                         testing::Values(Number{U"1st", 3, {"first"}}, Number{U"22nd", 4, {"twenty second"}},
                                         Number{U"5th", 3, {"fifth"}}, Number{U"5three", 1, {"five"}},
                                         Number{U"80s", 3, {"eighties"}}, Number{U"80st", 4, {"eightieth"}},
                                         Number{U"5s\u00E9", 1, {"five"}}));

TEST(SpokenNumber, isNoneWithoutADigit) {
    EXPECT_FALSE(numberAt(U"", 0));
    EXPECT_FALSE(numberAt(U"x5", 0));
    EXPECT_FALSE(numberAt(U".5", 0));
    EXPECT_FALSE(numberAt(U"$", 0));
    EXPECT_FALSE(numberAt(U"5", 1));
}

TEST(SpokenNumber, comesDigitByDigitWhenItIsLong) {
    const std::u32string_view number = U"5550123";
    for (std::size_t at = 0; at < number.size(); ++at) {
        const auto digit = numberAt(number, at);
        ASSERT_TRUE(digit);
        EXPECT_EQ(digit->length, 1U);
    }
    EXPECT_THAT(readings(number, 3), ElementsAreArray({"zero", "oh"}));
    EXPECT_THAT(readings(number, 6), ElementsAreArray({"three"}));
    EXPECT_EQ(numberAt(U"00123", 0)->length, 1U);
    EXPECT_EQ(numberAt(std::u32string(1000, U'0'), 0)->length, 1U);
    EXPECT_FALSE(numberAt(U"$" + std::u32string(1000, U'1'), 0)) << "no amount that has a name";
}

TEST(SpokenNumber, isFoundInsideAText) {
    EXPECT_THAT(readings(U"channel 5 now", 8), ElementsAreArray({"five"}));
}

} // namespace
