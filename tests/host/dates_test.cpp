#include "tests/host/plain_host.h"

#include <ctime>
#include <limits>

namespace zqm::host::test {
namespace {

constexpr const char* kConstructor =
    "Year as Integer, Month as Integer = 1, Day as Integer = 1, hour as Integer = 0, minute as Integer = 0, "
    "second as Integer = 0";
using Constructor = void(REALobject, std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t,
                         std::int64_t);

constexpr const char* kFields[] = {"Year", "Month", "Day", "Hour", "Minute", "Second"};

class Dates : public PlainHost {
protected:
    using PlainHost::PlainHost;

    Object created() { return runtime.adopt(call<REALobject>("PluginNewInstance", "Date")); }
    void expectFields(const Object& date, const std::vector<std::int64_t>& fields) {
        for (std::size_t index = 0; index < std::size(kFields); ++index) {
            std::int64_t value = -1;
            EXPECT_TRUE(call<bool>("REALGetPropValueInteger", date.handle(), kFields[index], &value));
            EXPECT_EQ(value, fields[index]) << kFields[index];
        }
    }
};

TEST_F(Dates, ConstructorTakesAllFields) {
    const Object date = created();
    auto* const construct = method<Constructor>(date, kConstructor);
    ASSERT_NE(construct, nullptr);
    construct(date.handle(), 2024, 2, 29, 23, 59, 58);
    expectFields(date, {2024, 2, 29, 23, 59, 58});
}

TEST_F(Dates, ConstructorIsFoundByItsNameAsWell) {
    const Object date = created();
    const std::string named = "Constructor(" + std::string(kConstructor) + ")";
    EXPECT_EQ(method<Constructor>(date, named.c_str()), method<Constructor>(date, kConstructor));
    for (const char* other :
         {"Year as Integer, Month as Integer = 1", "Year as Integer", "Year as Integer = 1"}) {
        EXPECT_EQ(method<Constructor>(date, other), nullptr) << other;
    }
}

TEST_F(Dates, FieldsAreSetOneByOne) {
    const Object date = created();
    const std::vector<std::int64_t> fields{1999, 12, 31, 1, 2, 3};
    for (std::size_t index = 0; index < std::size(kFields); ++index) {
        EXPECT_TRUE(call<bool>("REALSetPropValueInteger", date.handle(), kFields[index], fields[index]));
    }
    expectFields(date, fields);
    std::int64_t value = 0;
    EXPECT_FALSE(call<bool>("REALGetPropValueInteger", date.handle(), "Week", &value));
    EXPECT_FALSE(call<bool>("REALSetPropValueInteger", date.handle(), "Week", value));
}

TEST_F(Dates, OutsideOfTheCalendarStayAsTheyAreGiven) {
    constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
    constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();
    const std::vector<std::int64_t> fields{kLeast, 13, 0, -1, 75, kMost};
    const Object date = created();
    method<Constructor>(date, kConstructor)(date.handle(), fields[0], fields[1], fields[2], fields[3],
                                            fields[4], fields[5]);
    expectFields(date, fields);
    expectFields(runtime.date(2023, 2, 30), {2023, 2, 30, 0, 0, 0});
}

TEST_F(Dates, NewOnesAreOfNow) {
    const auto yearOf = [](std::time_t time) {
        std::tm parts{};
        localtime_r(&time, &parts);
        return parts.tm_year + 1900;
    };
    const int before = yearOf(std::time(nullptr));
    const std::int64_t year = created().get("Year").asInteger();
    EXPECT_TRUE(year == before || year == yearOf(std::time(nullptr)));
}

TEST_F(Dates, OfTheHostProgram) {
    EXPECT_EQ(runtime.date(2020).get("Month").asInteger(), 1);
    const Object date = runtime.construct("Date", 2020, 5);
    expectFields(date, {2020, 5, 1, 0, 0, 0});
    EXPECT_TRUE(date.isA("Date"));
    EXPECT_EQ(date.variantType(), 7);
}

TEST_F(Dates, MisuseIsReported) {
    const Object date = created();
    const Object dictionary = runtime.dictionary();
    method<Constructor>(date, kConstructor)(dictionary.handle(), 1, 1, 1, 1, 1, 1);
    expectReport(Report::Kind::WrongKind, "constructor of Date: Dictionary instead of a Date");
}

class DatesWithoutConstructor : public Dates {
protected:
    DatesWithoutConstructor() : Dates(Options{.without = {"Date.Constructor"}}) {}
};

TEST_F(DatesWithoutConstructor, StillHaveTheirFields) {
    const Object date = created();
    EXPECT_EQ(method<Constructor>(date, kConstructor), nullptr);
    EXPECT_TRUE(call<bool>("REALSetPropValueInteger", date.handle(), "Year", std::int64_t{1900}));
    EXPECT_EQ(date.get("Year").asInteger(), 1900);
}

} // namespace
} // namespace zqm::host::test
