#include "cli/say/say_lines.h"

#include <gtest/gtest.h>

namespace zqm::cli {
namespace {

using Kind = SpeakingEvent::Kind;

class SayLines : public testing::Test {
protected:
    void expectLines(const SpeakingEvent& event, const std::string& text, const std::string& json) {
        EXPECT_EQ(textLine(event, text_), text);
        EXPECT_EQ(jsonLine(event, text_), json);
    }

    SpokenText text_{"👋 \"two\nlines\" grüße"};
};

TEST_F(SayLines, OfAWord) {
    expectLines({.kind = Kind::Word, .time = 1.25, .position = 15, .length = 5}, "word 15 5 1.250 grüße",
                R"({"event":"word","position":14,"length":5,"utf16":15,"utf16Length":5,"word":"grüße",)"
                R"("time":1.25})");
    expectLines({.kind = Kind::Word, .time = 0, .position = 0, .length = 2}, "word 0 2 0.000 👋",
                R"({"event":"word","position":0,"length":1,"utf16":0,"utf16Length":2,"word":"👋",)"
                R"("time":0.0})");
}

TEST_F(SayLines, OfAWordWithALineEnd) {
    expectLines({.kind = Kind::Word, .time = 1, .position = 3, .length = 11}, "word 3 11 1.000 \"two?lines\"",
                R"({"event":"word","position":2,"length":11,"utf16":3,"utf16Length":11,)"
                R"("word":"\"two\nlines\"","time":1.0})");
}

TEST_F(SayLines, OfPhonemes) {
    expectLines({.kind = Kind::Phoneme, .time = 0.012, .opcode = 24, .symbol = "h"}, "",
                R"({"event":"phoneme","opcode":24,"symbol":"h","time":0.012})");
    expectLines({.kind = Kind::Phoneme, .time = {}, .opcode = 0}, "", R"({"event":"phoneme","opcode":0})");
}

TEST_F(SayLines, OfASyncMessage) {
    expectLines({.kind = Kind::Sync, .time = 2, .message = 4294967295}, "sync 4294967295 2.000",
                R"({"event":"sync","message":4294967295,"time":2.0})");
}

TEST_F(SayLines, OfAProblem) {
    expectLines({.kind = Kind::Problem, .time = 0.5, .position = 3, .text = "\"foo\" is\nwrong"},
                "problem 3 0.500 \"foo\" is?wrong",
                R"({"event":"problem","position":2,"utf16":3,"text":"\"foo\" is\nwrong","time":0.5})");
}

TEST_F(SayLines, OfTheFinish) {
    expectLines({.kind = Kind::Finished, .time = 100'000.00049, .completed = true}, "finish true 100000.000",
                R"({"event":"finish","completed":true,"time":100000.0})");
    expectLines({.kind = Kind::Finished, .time = {}, .completed = false}, "finish false -",
                R"({"event":"finish","completed":false})");
}

} // namespace
} // namespace zqm::cli
