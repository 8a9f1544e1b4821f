// Dates of Cocoa as host dates.

#include "tests/bridge/to_host_fixture.h"

namespace {

using zqm::host::Object;

// Within it the process's default time zone is another one.
class DefaultTimeZone {
public:
    explicit DefaultTimeZone(NSTimeZone* zone) : before_([[NSTimeZone defaultTimeZone] retain]) {
        [NSTimeZone setDefaultTimeZone:zone];
    }
    DefaultTimeZone(const DefaultTimeZone&) = delete;
    DefaultTimeZone& operator=(const DefaultTimeZone&) = delete;
    ~DefaultTimeZone() {
        [NSTimeZone setDefaultTimeZone:before_];
        [before_ release];
    }

private:
    NSTimeZone* before_;
};

std::string fieldsOf(const Object& date) {
    std::string all;
    for (const char* field : {"Year", "Month", "Day", "Hour", "Minute", "Second"}) {
        all += (all.empty() ? "" : " ") + std::to_string(date.get(field).asInteger());
    }
    return all;
}

struct Moment {
    double sinceReference; // seconds since the start of 2001, in GMT
    const char* fields;    // two hours east of it
};

constexpr Moment kMoments[] = {
    {0, "2001 1 1 2 0 0"},        {0.999, "2001 1 1 2 0 0"},       {59.25, "2001 1 1 2 0 59"},
    {-1, "2001 1 1 1 59 59"},     {79200, "2001 1 2 0 0 0"},       {5097600, "2001 3 1 2 0 0"},
    {94608000, "2004 1 1 2 0 0"}, {-3155760000, "1901 1 1 2 0 0"},
};

class DatesToHost : public ToHostTest {
protected:
    DefaultTimeZone zone{[NSTimeZone timeZoneForSecondsFromGMT:7200]};
};

TEST_F(DatesToHost, HaveTheFieldsOfTheDefaultTimeZone) {
    for (const Moment& moment : kMoments) {
        const Object date = converted([NSDate dateWithTimeIntervalSinceReferenceDate:moment.sinceReference]);
        EXPECT_EQ(date.className(), "Date");
        EXPECT_EQ(fieldsOf(date), moment.fields) << moment.sinceReference;
    }
}

TEST_F(DatesToHost, HaveTheSameFieldsFromAHostWithoutTheConstructor) {
    PluginHost::refuse("REALLoadObjectMethod");
    for (const Moment& moment : kMoments) {
        const Object date = converted([NSDate dateWithTimeIntervalSinceReferenceDate:moment.sinceReference]);
        EXPECT_EQ(fieldsOf(date), moment.fields) << moment.sinceReference;
    }
    EXPECT_EQ(host->entryPoints().calls("REALSetPropValueInteger"), 6 * std::size(kMoments));
}

TEST_F(DatesToHost, AreMadeByTheConstructorAlone) {
    EXPECT_FALSE(converted([NSDate date]).isNull());
    EXPECT_EQ(host->entryPoints().calls("REALSetPropValueInteger"), 0U);
}

TEST_F(DatesToHost, AreNilFromAHostThatHasNone) {
    host->entryPoints().failEveryCall("PluginNewInstance");
    EXPECT_TRUE(converted([NSDate date]).isNull());
}

TEST_F(DatesToHost, OfAnotherTimeZoneKeepTheirMoment) {
    NSCalendarDate* elsewhere = [NSCalendarDate dateWithYear:2020
                                                       month:6
                                                         day:15
                                                        hour:12
                                                      minute:30
                                                      second:45
                                                    timeZone:[NSTimeZone timeZoneForSecondsFromGMT:-3600]];
    EXPECT_EQ(fieldsOf(converted(elsewhere)), "2020 6 15 15 30 45");
}

} // namespace
