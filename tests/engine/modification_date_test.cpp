#include "engine/protocol/modification_date.h"

#include <gtest/gtest.h>

using zqm::protocol::parseModificationDate;

namespace {

TEST(ModificationDate, countsSeconds) {
    EXPECT_EQ(parseModificationDate("1970-01-01 00:00:00 +0000"), 0);
    EXPECT_EQ(parseModificationDate("2005-12-25 17:30:05 +0000"), 1135531805);
    EXPECT_EQ(parseModificationDate("1969-12-31 23:59:59 +0000"), -1);
}

TEST(ModificationDate, isOfItsZone) {
    EXPECT_EQ(parseModificationDate("1970-01-01 01:30:00 +0130"), 0);
    EXPECT_EQ(parseModificationDate("1969-12-31 17:00:00 -0700"), 0);
}

TEST(ModificationDate, mayFallIntoALeapYear) {
    EXPECT_EQ(parseModificationDate("2024-02-29 00:00:00 +0000"), 1709164800);
    EXPECT_FALSE(parseModificationDate("2023-02-29 00:00:00 +0000"));
}

TEST(ModificationDate, isNothingElse) {
    for (const char* const text :
         {"", "2024", "2024-01-31", "2024-01-31 12:00:00", "2024-01-31 12:00:00 0000",
          "2024-01-31T12:00:00 +0000", "2024-13-01 12:00:00 +0000", "2024-00-01 12:00:00 +0000",
          "2024-01-00 12:00:00 +0000", "2024-01-31 24:00:00 +0000", "2024-01-31 12:60:00 +0000",
          "2024-01-31 12:00:00 +00000", " 2024-01-31 12:00:00 +0000", "24-01-31 12:00:00 +0000",
          "+024-01-31 12:00:00 +0000", "-024-01-31 12:00:00 +0000", "yesterday"}) {
        EXPECT_FALSE(parseModificationDate(text)) << text;
    }
}

} // namespace
