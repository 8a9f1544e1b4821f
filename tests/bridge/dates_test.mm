// Dates of the host as the platform's, and the other way.

#include "bridge/dates.h"

#include "tests/bridge/bridge_host.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <limits>
#include <random>
#include <vector>

#import <Foundation/Foundation.h>

namespace {

using namespace zqm::bridge::test;
using testing::ElementsAre;
using testing::IsEmpty;
using zqm::host::Object;

constexpr const char* kConstructor =
    "Year as Integer, Month as Integer = 1, Day as Integer = 1, hour as Integer = 0, minute as Integer = 0, "
    "second as Integer = 0";
constexpr std::array kFields{"Year", "Month", "Day", "Hour", "Minute", "Second"};

NSDate* local(int year, int month, int day, int hour, int minute, int second) {
    std::tm parts{};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    parts.tm_isdst = -1;
    return [NSDate dateWithTimeIntervalSince1970:static_cast<double>(std::mktime(&parts))];
}

std::vector<std::int64_t> fieldsOf(const Object& date) {
    std::vector<std::int64_t> fields;
    for (const char* name : kFields) {
        fields.push_back(date.get(name).asInteger());
    }
    return fields;
}

std::vector<std::int64_t> utcFields(std::time_t time) {
    std::tm parts{};
    gmtime_r(&time, &parts);
    return {parts.tm_year + std::int64_t{1900},
            parts.tm_mon + 1,
            parts.tm_mday,
            parts.tm_hour,
            parts.tm_min,
            parts.tm_sec};
}

void useZone(NSString* name) {
    setenv("TZ", [name UTF8String], 1);
    tzset();
    [NSTimeZone resetSystemTimeZone];
    [NSTimeZone setDefaultTimeZone:[NSTimeZone timeZoneWithName:name]];
}

// ---- to the platform

TEST(DateToCocoa, IsTheFieldsAsLocalTime) {
    for (NSString* zone : {@"UTC", @"Europe/Berlin", @"America/New_York", @"Asia/Kolkata"}) {
        inBridge([zone](PluginHost& host) {
            useZone(zone);
            const Object winter = host->date(2001, 2, 3, 4, 5, 6);
            const Object summer = host->date(2024, 7, 31, 23, 59, 59);
            const Object leap = host->date(2000, 2, 29);
            EXPECT_TRUE([local(2001, 2, 3, 4, 5, 6) isEqualToDate:NewNSDate(winter.handle())]);
            EXPECT_TRUE([local(2024, 7, 31, 23, 59, 59) isEqualToDate:NewNSDate(summer.handle())]);
            EXPECT_TRUE([local(2000, 2, 29, 0, 0, 0) isEqualToDate:NewNSDate(leap.handle())]);
            EXPECT_EQ([NewNSDate(leap.handle()) retainCount], 1U);
        });
    }
}

TEST(DateToCocoa, OfNullIsNil) {
    inBridge([](PluginHost& host) {
        EXPECT_EQ(NewNSDate(nullptr), nil);
        EXPECT_THAT(host->entryPoints().asked(), IsEmpty());
    });
}

TEST(DateToCocoa, WithoutEntryPointIsNil) {
    inBridge([](PluginHost& host) {
        const Object date = host->date(2001);
        host->entryPoints().refuse("REALGetPropValueInteger");
        EXPECT_EQ(NewNSDate(date.handle()), nil);
    });
}

TEST(DateToCocoa, WhatIsNoDateIsNil) {
    inBridge([](PluginHost& host) {
        const Object dictionary = host->dictionary();
        EXPECT_EQ(NewNSDate(dictionary.handle()), nil);
    });
}

std::vector<std::string> fieldsRead;
std::string missingField;

TEST(DateToCocoa, ReadsItsFieldsInOrderUntilOneIsMissing) {
    for (std::size_t missing = 0; missing <= kFields.size(); ++missing) {
        inBridge([missing](PluginHost& host) {
            missingField = missing < kFields.size() ? kFields[missing] : "";
            PluginHost::replace(
                "REALGetPropValueInteger", +[](REALobject object, const char* name, std::int64_t* out) {
                    fieldsRead.emplace_back(name);
                    EXPECT_EQ(*out, 0) << name;
                    const auto read =
                        hostFunction<bool(REALobject, const char*, std::int64_t*)>("REALGetPropValueInteger");
                    return name != missingField && read(object, name, out);
                });
            const Object date = host->date(2001, 2, 3, 4, 5, 6);
            NSDate* converted = NewNSDate(date.handle());
            EXPECT_EQ(converted == nil, missing < kFields.size());
            std::vector<std::string> expected(
                kFields.begin(),
                kFields.begin() + static_cast<std::ptrdiff_t>(std::min(missing + 1, kFields.size())));
            EXPECT_EQ(fieldsRead, expected);
        });
    }
}

// As the C library counts them.
TEST(DateToCocoa, FieldsOutsideTheCalendarCountOn) {
    inBridge([](PluginHost& host) {
        useZone(@"UTC");
        std::mt19937 random(1);
        for (int round = 0; round < 300; ++round) {
            std::array<int, 6> fields{};
            fields[0] = std::uniform_int_distribution(1000, 9000)(random);
            for (std::size_t field = 1; field < fields.size(); ++field) {
                fields[field] = std::uniform_int_distribution(-5000, 5000)(random);
            }
            std::tm expected{};
            expected.tm_year = fields[0] - 1900;
            expected.tm_mon = fields[1] - 1;
            expected.tm_mday = fields[2];
            expected.tm_hour = fields[3];
            expected.tm_min = fields[4];
            expected.tm_sec = fields[5];
            const Object date = host->date(fields[0], fields[1], fields[2], fields[3], fields[4], fields[5]);
            EXPECT_EQ([NewNSDate(date.handle()) timeIntervalSince1970],
                      static_cast<double>(timegm(&expected)))
                << testing::PrintToString(fields);
        }
    });
}

TEST(DateToCocoa, FieldsOfAnySizeDoNoHarm) {
    inBridge([](PluginHost& host) {
        constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();
        constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
        const std::vector<std::int64_t> values{
            kLeast, kLeast + 1, -(std::int64_t{1} << 40), -1,        0,
            1,      32,         std::int64_t{1} << 32,    kMost - 1, kMost};
        std::mt19937 random(2);
        std::uniform_int_distribution<std::size_t> any(0, values.size() - 1);
        for (int round = 0; round < 2000; ++round) {
            std::array<std::int64_t, 6> fields{};
            std::generate(fields.begin(), fields.end(), [&] { return values[any(random)]; });
            const Object date = host->date(fields[0], fields[1], fields[2], fields[3], fields[4], fields[5]);
            id converted = NewNSDate(date.handle());
            EXPECT_TRUE(converted == nil || [converted isKindOfClass:[NSDate class]]);
        }
        EXPECT_EQ(NewNSDate(host->date(2000, kLeast).handle()), nil) << "no month comes before it";
    });
}

// Years before the Common Era count on from 0 downwards.
TEST(DateToCocoa, YearsFarOffAreCounted) {
    inBridge([](PluginHost& host) {
        useZone(@"UTC");
        for (const std::int64_t year :
             {0, 1, -1, -4, -400, 399, 400, 9'999, 10'000, 10'001, 200'000'000, -200'000'000}) {
            for (const std::int64_t month : {1, 3, 12}) {
                SCOPED_TRACE(std::to_string(year) + "-" + std::to_string(month));
                NSDate* date = NewNSDate(host->date(year, month, 28, 12, 30, 59).handle());
                const auto time = static_cast<std::time_t>([date timeIntervalSince1970]);
                EXPECT_THAT(utcFields(time), ElementsAre(year, month, 28, 12, 30, 59));
            }
        }
        constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
        for (const std::int64_t year : {kMost, -kMost, kMost / 1'000, -kMost - 1}) {
            EXPECT_NE(NewNSDate(host->date(year).handle()), nil);
        }
    });
}

// ---- to the host

TEST(DateToHost, HasTheFieldsOfTheProcesssTimeZone) {
    for (NSString* zone : {@"UTC", @"Europe/Berlin", @"America/New_York", @"Asia/Kolkata"}) {
        inBridge([zone](PluginHost& host) {
            useZone(zone);
            const Object date = host->adopt(newHostDate(local(2024, 7, 31, 23, 59, 58)));
            EXPECT_TRUE(date.isA("Date"));
            EXPECT_THAT(fieldsOf(date), ElementsAre(2024, 7, 31, 23, 59, 58));
            EXPECT_EQ(host->entryPoints().lookups("REALSetPropValueInteger"), 0U);
        });
    }
}

TEST(DateToHost, DropsFractions) {
    inBridge([](PluginHost& host) {
        NSDate* date = [local(2024, 7, 31, 23, 59, 58) dateByAddingTimeInterval:0.75];
        EXPECT_THAT(fieldsOf(host->adopt(newHostDate(date))), ElementsAre(2024, 7, 31, 23, 59, 58));
    });
}

TEST(DateToHost, AsksTheNewDateForItsConstructor) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        const Object date = host->adopt(newHostDate(local(2024, 7, 31, 23, 59, 58)));
        EXPECT_THAT(ObjectMethods::asked(), ElementsAre(ObjectMethods::Request{date.handle(), kConstructor}));
    });
}

std::vector<std::pair<std::string, std::int64_t>> fieldsSet;

TEST(DateToHost, SetsItsPropertiesInOrderWhereThereIsNoConstructor) {
    inBridge([](PluginHost& host) {
        ObjectMethods methods;
        methods.answer(kConstructor, nullptr);
        PluginHost::replace(
            "REALSetPropValueInteger", +[](REALobject object, const char* name, std::int64_t value) {
                fieldsSet.emplace_back(name, value);
                return hostFunction<bool(REALobject, const char*, std::int64_t)>("REALSetPropValueInteger")(
                    object, name, value);
            });
        const Object date = host->adopt(newHostDate(local(2024, 7, 31, 23, 59, 58)));
        EXPECT_THAT(fieldsOf(date), ElementsAre(2024, 7, 31, 23, 59, 58));
        EXPECT_THAT(fieldsSet, ElementsAre(testing::Pair("Year", 2024), testing::Pair("Month", 7),
                                           testing::Pair("Day", 31), testing::Pair("Hour", 23),
                                           testing::Pair("Minute", 59), testing::Pair("Second", 58)));
    });
}

TEST(DateToHost, WithoutTheClassIsNull) {
    inBridge([](PluginHost& host) {
        host->entryPoints().refuse("PluginNewInstance");
        EXPECT_EQ(newHostDate([NSDate date]), nullptr);
    });
}

TEST(DateToHost, WithoutConstructorAndPropertiesIsADateAllTheSame) {
    inBridge([](PluginHost& host) {
        host->entryPoints().refuse("REALLoadObjectMethod");
        host->entryPoints().refuse("REALSetPropValueInteger");
        EXPECT_TRUE(host->adopt(newHostDate([NSDate date])).isA("Date"));
    });
}

// Years before the Common Era count on from 0 downwards.
TEST(DateToHost, DatesFarOffHaveTheirFields) {
    constexpr std::time_t kYear0 = -62'167'219'200;
    constexpr std::time_t kYear1 = -62'135'596'800;
    constexpr std::time_t kYear401 = -49'512'816'000;
    constexpr std::time_t kYear9601 = 240'822'288'000;
    constexpr std::time_t kYear10001 = 253'445'068'800;
    constexpr std::time_t kTrillion = 1'000'000'000'000;
    inBridge([](PluginHost& host) {
        useZone(@"UTC");
        for (const std::time_t boundary : {kYear0, kYear1, kYear401, kYear9601, kYear10001, kTrillion,
                                           -kTrillion, 60'000 * kTrillion, -60'000 * kTrillion}) {
            for (const std::time_t time :
                 {boundary - 86'400, boundary - 8, boundary, boundary + std::time_t{86'400} * 59}) {
                SCOPED_TRACE(std::to_string(time));
                NSDate* date = [NSDate dateWithTimeIntervalSince1970:static_cast<double>(time)];
                EXPECT_EQ(fieldsOf(host->adopt(newHostDate(date))), utcFields(time));
            }
        }
    });
}

TEST(DateToHost, BeyondAnySecondThatCanBeCountedIsNull) {
    inBridge([](PluginHost& host) {
        constexpr double kInfinity = std::numeric_limits<double>::infinity();
        for (const double seconds : {0x1p63, -0x1p64, 1e300, -1e300, kInfinity, -kInfinity}) {
            EXPECT_EQ(newHostDate([NSDate dateWithTimeIntervalSinceReferenceDate:seconds]), nullptr);
        }
        for (const double seconds : {9e18, -9e18}) {
            NSDate* date = [NSDate dateWithTimeIntervalSinceReferenceDate:seconds];
            EXPECT_TRUE(host->adopt(newHostDate(date)).isA("Date"));
        }
    });
}

TEST(Dates, ConvertThereAndBack) {
    for (NSString* zone : {@"UTC", @"Europe/Berlin", @"America/New_York", @"Asia/Kolkata"}) {
        inBridge([zone](PluginHost& host) {
            useZone(zone);
            const Object date = host->date(1999, 12, 31, 23, 59, 59);
            const Object back = host->adopt(newHostDate(NewNSDate(date.handle())));
            EXPECT_EQ(fieldsOf(back), fieldsOf(date));
        });
    }
}

} // namespace
