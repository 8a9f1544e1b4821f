#include "cli/listen/listening_lines.h"

#include <gtest/gtest.h>

#include <string>

namespace zqm::cli {
namespace {

TEST(ListeningLines, AreObjectsWithTheEventFirst) {
    EXPECT_EQ(beganLine(), R"({"event":"began"})");
    EXPECT_EQ(recognizedLine("Open the door", 2, TimeRange{1.25, 2.1}),
              R"({"event":"recognized","command":"Open the door","index":2,"begin":1.25,"end":2.1})");
    EXPECT_EQ(recognizedLine("stop", 0, std::nullopt),
              R"({"event":"recognized","command":"stop","index":0})");
    EXPECT_EQ(rejectedLine({0, 12}), R"({"event":"rejected","begin":0.0,"end":12.0})");
    EXPECT_EQ(refusedLine("!?", "it has no words"),
              R"({"event":"refused","command":"!?","reason":"it has no words"})");
    EXPECT_EQ(moreRefusedLine(900), R"({"event":"moreRefused","count":900})");
    EXPECT_EQ(failedLine("no microphone"), R"({"event":"failed","reason":"no microphone"})");
    EXPECT_EQ(endedLine(), R"({"event":"ended"})");
}

TEST(ListeningLines, TellTimesToTheMillisecond) {
    EXPECT_EQ(rejectedLine({1.0 / 3, 100'000.12345}),
              R"({"event":"rejected","begin":0.333,"end":100000.123})");
}

TEST(ListeningLines, EscapeWhatWouldEndThem) {
    EXPECT_EQ(recognizedLine("say \"a\\b\"\n\t\x1b\x7F", 1, std::nullopt),
              "{\"event\":\"recognized\",\"command\":\"say \\\"a\\\\b\\\"\\n\\t\\u001b\x7F\",\"index\":1}");
    EXPECT_EQ(refusedLine(std::string_view("a\0b", 3), "x"),
              R"({"event":"refused","command":"a\u0000b","reason":"x"})");
}

TEST(ListeningLines, AreUtf8) {
    EXPECT_EQ(refusedLine("grüße 世界 👋", "x"),
              R"({"event":"refused","command":"grüße 世界 👋","reason":"x"})");
    EXPECT_EQ(failedLine("gr\xFC\xDF.wav: no sound"),
              "{\"event\":\"failed\",\"reason\":\"gr\uFFFD\uFFFD.wav: no sound\"}");
}

} // namespace
} // namespace zqm::cli
