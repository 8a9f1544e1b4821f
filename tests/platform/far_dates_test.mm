// Dates that GNUstep alone would describe for ever.

#import <Foundation/Foundation.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

constexpr double kDay = 24.0 * 60 * 60;
constexpr double kCycle = 146'097 * kDay; // 400 years

std::string described(double interval) {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    NSDate* const date = [NSDate dateWithTimeIntervalSinceReferenceDate:interval];
    const std::string text([[date description] UTF8String]);
    EXPECT_EQ(std::string([[date descriptionWithLocale:nil] UTF8String]), text);
    // As a log describes what a collection holds.
    const std::string list([[[NSArray arrayWithObject:date] description] UTF8String]);
    EXPECT_NE(list.find(text), std::string::npos) << list;
    [pool release];
    return text;
}

TEST(FarDates, AreDescribedLikeThoseOfNearerYears) {
    EXPECT_EQ(described(0), "2001-01-01 00:00:00 +0000");
    EXPECT_EQ(described(-kDay), "2000-12-31 00:00:00 +0000");
    EXPECT_EQ(described(19 * kCycle - kDay), "9600-12-31 00:00:00 +0000");
    EXPECT_EQ(described(19 * kCycle), "9601-01-01 00:00:00 +0000");
    EXPECT_EQ(described(-5 * kCycle), "0001-01-01 00:00:00 +0000");
    EXPECT_EQ(described(-6 * kCycle), "-399-01-01 00:00:00 +0000");
    EXPECT_EQ(described(7'000'000 * kCycle), "2800002001-01-01 00:00:00 +0000");
    EXPECT_EQ(described(-7'000'000 * kCycle), "-2799997999-01-01 00:00:00 +0000");
}

TEST(FarDates, ThatNoCalendarHasAreDescribedByTheirDistance) {
    EXPECT_EQ(described(1e300), "1e+300 s from 2001-01-01 00:00:00 +0000");
    EXPECT_EQ(described(-std::numeric_limits<double>::infinity()), "-inf s from 2001-01-01 00:00:00 +0000");
}

} // namespace
