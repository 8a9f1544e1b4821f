#include "engine/text/embedded_text.h"

#include "tests/support/generated_text.h"
#include "tests/support/utf16.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

using namespace zqm::engine;
using namespace zqm::support;
using zqm::protocol::Delimiters;
using zqm::protocol::InputMode;
using zqm::protocol::SpellingMode;

namespace {

EmbeddedText parse(const std::string& text, const Delimiters& delimiters = {}) {
    return parseEmbeddedText(text, delimiters);
}

std::vector<Command> commandsOf(const EmbeddedText& text) {
    std::vector<Command> commands;
    for (const PlacedCommand& placed : text.commands) {
        commands.push_back(placed.command);
    }
    return commands;
}

// The one place and code of the mistake in a text with one.
struct Found {
    int code = 0;
    std::size_t place = 0;
    std::string message;
};

std::vector<Found> mistakesIn(const EmbeddedText& text) {
    std::vector<Found> found;
    for (const PlacedCommand& placed : text.commands) {
        if (const auto* const mistake = std::get_if<Mistake>(&placed.command)) {
            found.push_back({mistake->code, placed.original, mistake->message});
        }
    }
    return found;
}

constexpr Number absolute(double value) {
    return {value, Number::Kind::Absolute};
}

constexpr Number plus(double value) {
    return {value, Number::Kind::Plus};
}

constexpr Number minus(double value) {
    return {value, Number::Kind::Minus};
}

std::uint32_t code(const char (&characters)[5]) {
    std::uint32_t value = 0;
    for (int index = 0; index < 4; ++index) {
        value = value * 256 + static_cast<unsigned char>(characters[index]);
    }
    return value;
}

// ---- right commands

struct Right {
    std::string list; // what stands between the delimiters
    std::vector<Command> commands;
};

void PrintTo(const Right& example, std::ostream* stream) {
    *stream << testing::PrintToString(example.list);
}

class RightCommands : public testing::TestWithParam<Right> {};

TEST_P(RightCommands, areReadAndLeaveTheText) {
    const EmbeddedText text = parse("One [[" + GetParam().list + "]]two.");
    EXPECT_EQ(text.text, "One two.");
    EXPECT_EQ(commandsOf(text), GetParam().commands);
    for (const PlacedCommand& placed : text.commands) {
        EXPECT_EQ(placed.at, 4U);
    }
    EXPECT_EQ(text.delimiters, Delimiters{});
    EXPECT_EQ(text.originalPosition(3), 3U);
    EXPECT_EQ(text.originalPosition(4), 8 + toUtf16(GetParam().list).size());
}

const std::uint32_t kLargest = 0xFFFFFFFFU;

INSTANTIATE_TEST_SUITE_P(
    Table, RightCommands,
    testing::Values(
        // each command, each value of its argument
        Right{"char NORM", {SetCharacters{SpellingMode::Normal}}},
        Right{"char LTRL", {SetCharacters{SpellingMode::Literal}}}, Right{"cmnt", {}},
        Right{"cmnt any text", {}}, Right{"cmnt 1, 2 [3] (4)! rate 300", {}}, Right{"cmnt one; two", {}},
        Right{"cmnt one; 200; two;", {}}, Right{"cmnt; rate 300", {SetRate{absolute(300)}}},
        Right{"cmnt one ;two;rate 300", {SetRate{absolute(300)}}}, Right{"cmnt see [[rate 300", {}},
        Right{"ctxt WSKP", {}}, Right{"ctxt WORD", {}}, Right{"ctxt NORM", {}}, Right{"ctxt TSKP", {}},
        Right{"ctxt TEXT", {}}, Right{"emph +", {Emphasis{true}}}, Right{"emph -", {Emphasis{false}}},
        Right{"inpt TEXT", {SetInput{InputMode::Text}}}, Right{"inpt PHON", {SetInput{InputMode::Phonemes}}},
        Right{"nmbr NORM", {SetNumbers{SpellingMode::Normal}}},
        Right{"nmbr LTRL", {SetNumbers{SpellingMode::Literal}}}, Right{"pbas 1", {SetPitchBase{absolute(1)}}},
        Right{"pbas 127", {SetPitchBase{absolute(127)}}}, Right{"pbas 44.5", {SetPitchBase{absolute(44.5)}}},
        Right{"pbas +3", {SetPitchBase{plus(3)}}}, Right{"pbas -3.25", {SetPitchBase{minus(3.25)}}},
        Right{"pmod 0", {SetPitchModulation{absolute(0)}}},
        Right{"pmod 127", {SetPitchModulation{absolute(127)}}},
        Right{"pmod +0.5", {SetPitchModulation{plus(0.5)}}},
        Right{"pmod -130", {SetPitchModulation{minus(130)}}}, Right{"rate 1", {SetRate{absolute(1)}}},
        Right{"rate 180", {SetRate{absolute(180)}}}, Right{"rate 180.75", {SetRate{absolute(180.75)}}},
        Right{"rate 100000", {SetRate{absolute(100000)}}}, Right{"rate +0", {SetRate{plus(0)}}},
        Right{"rate +25", {SetRate{plus(25)}}}, Right{"rate -25.5", {SetRate{minus(25.5)}}},
        Right{"rset 0", {Reset{}}}, Right{"rset 0x0", {Reset{}}}, Right{"slnc 0", {Silence{0}}},
        Right{"slnc 500", {Silence{500}}}, Right{"slnc 0x1F4", {Silence{500}}},
        Right{"slnc 4294967295", {Silence{kLargest}}}, Right{"sync 0", {SyncMessage{0}}},
        Right{"sync 65", {SyncMessage{65}}}, Right{"sync 4294967295", {SyncMessage{kLargest}}},
        Right{"sync 1234", {SyncMessage{1234}}}, Right{"sync 0x41", {SyncMessage{0x41}}},
        Right{"sync 0XfFfFfFfF", {SyncMessage{kLargest}}}, Right{"sync 0x0000000012", {SyncMessage{0x12}}},
        Right{"sync ABCD", {SyncMessage{code("ABCD")}}}, Right{"sync aB#9", {SyncMessage{code("aB#9")}}},
        Right{"sync 12a4", {SyncMessage{code("12a4")}}}, Right{"sync -123", {SyncMessage{code("-123")}}},
        Right{"sync RATE", {SyncMessage{code("RATE")}}}, Right{"vers 1", {}}, Right{"vers 0x01000000", {}},
        Right{"vers VERS", {}}, Right{"volm 0", {SetVolume{absolute(0)}}},
        Right{"volm 1", {SetVolume{absolute(1)}}}, Right{"volm 1.0", {SetVolume{absolute(1)}}},
        Right{"volm 0.3", {SetVolume{absolute(0.3)}}}, Right{"volm .3", {SetVolume{absolute(0.3)}}},
        Right{"volm 0.", {SetVolume{absolute(0)}}}, Right{"volm +0.1", {SetVolume{plus(0.1)}}},
        Right{"volm -2", {SetVolume{minus(2)}}}));

INSTANTIATE_TEST_SUITE_P(
    Writing, RightCommands,
    testing::Values(
        // blanks, also where they can be left out
        Right{"rate200", {SetRate{absolute(200)}}}, Right{"rate+20", {SetRate{plus(20)}}},
        Right{"rate - 20", {SetRate{minus(20)}}}, Right{"  rate \t 200\n", {SetRate{absolute(200)}}},
        Right{"emph+", {Emphasis{true}}}, Right{"\u3000rate\u00A0200\u2003", {SetRate{absolute(200)}}},
        // names and modes in either case
        Right{"RATE 200", {SetRate{absolute(200)}}}, Right{"Emph +", {Emphasis{true}}},
        Right{"inpt phon", {SetInput{InputMode::Phonemes}}},
        Right{"char Ltrl", {SetCharacters{SpellingMode::Literal}}}, Right{"cTXT word", {}},
        Right{"sync abcd", {SyncMessage{code("abcd")}}},
        // lists
        Right{"", {}}, Right{" ", {}}, Right{";", {}}, Right{" ; ; ", {}},
        Right{"rate 200;", {SetRate{absolute(200)}}}, Right{";rate 200", {SetRate{absolute(200)}}},
        Right{"rate 200;volm 0.5", {SetRate{absolute(200)}, SetVolume{absolute(0.5)}}},
        Right{"rate 200 ; ; volm 0.5 ;\nemph +",
              {SetRate{absolute(200)}, SetVolume{absolute(0.5)}, Emphasis{true}}},
        Right{"rate +1; rate +1; rate +1", {SetRate{plus(1)}, SetRate{plus(1)}, SetRate{plus(1)}}}));

// ---- mistakes

struct Wrong {
    std::string list;
    int code;
    std::string place; // what the list goes on with where the mistake is
    std::string message;
};

void PrintTo(const Wrong& example, std::ostream* stream) {
    *stream << testing::PrintToString(example.list);
}

class WrongCommands : public testing::TestWithParam<Wrong> {};

TEST_P(WrongCommands, areMistakesAtTheirPlaceAndLeaveTheText) {
    const Wrong& wrong = GetParam();
    const std::string before = "\u00DCn \U0001F600 "; // fewer UTF-16 units than bytes
    const EmbeddedText text = parse(before + "[[" + wrong.list + "]]two.");
    EXPECT_EQ(text.text, before + "two.");
    const std::vector<Found> found = mistakesIn(text);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].code, wrong.code);
    ASSERT_TRUE(wrong.list.ends_with(wrong.place));
    const std::string upTo = before + "[[" + wrong.list.substr(0, wrong.list.size() - wrong.place.size());
    EXPECT_EQ(found[0].place, toUtf16(upTo).size());
    EXPECT_EQ(found[0].message, wrong.message);
    EXPECT_EQ(text.commands[0].at, toUtf16(before).size());
}

const std::string kOfDelimiters = "two delimiters of one or two characters each";
const std::string kOfCode = "four characters, or a number of 32 bits (decimal, or hexadecimal behind 0x)";
const std::string kOfPitch = "a pitch from 1 to 127, or + or - and a number";
const std::string kOfModulation = "a modulation from 0 to 127, or + or - and a number";
const std::string kOfRate = "words a minute, at least 1, or + or - and a number";
const std::string kOfVolume = "a volume from 0 to 1, or + or - and a number";

Wrong badValue(const std::string& name, const std::string& takes, const std::string& value) {
    return {name + " " + value, -245, value, "\"" + name + "\" takes " + takes + ", not \"" + value + "\"."};
}

INSTANTIATE_TEST_SUITE_P(
    BadValue, WrongCommands,
    testing::Values(
        badValue("char", "NORM or LTRL", "LITERAL"), badValue("char", "NORM or LTRL", "TEXT"),
        badValue("ctxt", "WSKP, WORD, NORM, TSKP or TEXT", "LTRL"), badValue("emph", "+ or -", "*"),
        badValue("emph", "+ or -", "+1"), badValue("emph", "+ or -", "++"),
        badValue("inpt", "TEXT or PHON", "NORM"), badValue("nmbr", "NORM or LTRL", "1"),
        badValue("pbas", kOfPitch, "0"), badValue("pbas", kOfPitch, "0.99"),
        badValue("pbas", kOfPitch, "127.01"), badValue("pbas", kOfPitch, "high"),
        badValue("pmod", kOfModulation, "128"), badValue("pmod", kOfModulation, "1e1"),
        badValue("rate", kOfRate, "0"), badValue("rate", kOfRate, "fast"), badValue("rate", kOfRate, "200x"),
        badValue("rate", kOfRate, "0x80"), badValue("rate", kOfRate, "1,5"),
        badValue("rate", kOfRate, "1.2.3"), badValue("rate", kOfRate, "."), badValue("rate", kOfRate, "+"),
        badValue("rate", kOfRate, "-"), badValue("rate", kOfRate, "+-5"), badValue("rate", kOfRate, "--5"),
        badValue("rate", kOfRate, "+ x"), badValue("rate", kOfRate, "inf"), badValue("rate", kOfRate, "nan"),
        badValue("rate", kOfRate, "-inf"), badValue("rate", kOfRate, "99999999999"),
        badValue("rate", kOfRate, "\u0661\u0662\u0663"), badValue("rset", "0", "1"),
        badValue("rset", "0", "-0"), badValue("rset", "0", "NULL"),
        badValue("slnc", "whole milliseconds", "-1"), badValue("slnc", "whole milliseconds", "+1"),
        badValue("slnc", "whole milliseconds", "1.5"), badValue("slnc", "whole milliseconds", "LONG"),
        badValue("slnc", "whole milliseconds", "4294967296"), badValue("sync", kOfCode, "ABC"),
        badValue("sync", kOfCode, "ABCDE"), badValue("sync", kOfCode, "0x"),
        badValue("sync", kOfCode, "0xZZ"), badValue("sync", kOfCode, "0x100000000"),
        badValue("sync", kOfCode, "4294967296"), badValue("sync", kOfCode, "-1"),
        badValue("sync", kOfCode, "\u00E4\u00F6"), badValue("sync", kOfCode, "\U0001F600"),
        badValue("vers", kOfCode, "1.0.0"), badValue("volm", kOfVolume, "1.01"),
        badValue("volm", kOfVolume, "loud"),
        badValue("xtnd", "the four characters of an engine, and what that understands", "abc")));

Wrong lacking(const std::string& list, const std::string& name, const std::string& takes) {
    return {list, -252, list, "\"" + name + "\" lacks what it takes: " + takes + "."};
}

Wrong surplus(const std::string& list, const std::string& place, const std::string& message) {
    return {list, -252, place, message};
}

INSTANTIATE_TEST_SUITE_P(
    BadCount, WrongCommands,
    testing::Values(
        lacking("char", "char", "NORM or LTRL"), lacking("ctxt", "ctxt", "WSKP, WORD, NORM, TSKP or TEXT"),
        lacking("dlim", "dlim", kOfDelimiters), lacking("dlim (", "dlim", kOfDelimiters),
        lacking("emph", "emph", "+ or -"), lacking("inpt", "inpt", "TEXT or PHON"),
        lacking("nmbr", "nmbr", "NORM or LTRL"), lacking("pbas", "pbas", kOfPitch),
        lacking("pmod", "pmod", kOfModulation), lacking("rate", "rate", kOfRate),
        lacking("RATE  ", "rate", kOfRate), lacking("rset", "rset", "0"),
        lacking("slnc", "slnc", "whole milliseconds"), lacking("sync", "sync", kOfCode),
        lacking("vers", "vers", kOfCode), lacking("volm", "volm", kOfVolume),
        lacking("xtnd", "xtnd", "the four characters of an engine, and what that understands"),
        surplus("char NORM LTRL", "LTRL", "\"char\" takes only NORM or LTRL, not also \"LTRL\"."),
        surplus("ctxt WORD 1", "1", "\"ctxt\" takes only WSKP, WORD, NORM, TSKP or TEXT, not also \"1\"."),
        surplus("dlim ( ) x", "x", "\"dlim\" takes only " + kOfDelimiters + ", not also \"x\"."),
        surplus("emph + -", "-", "\"emph\" takes only + or -, not also \"-\"."),
        surplus("emph + 1", "1", "\"emph\" takes only + or -, not also \"1\"."),
        surplus("inpt TEXT PHON", "PHON", "\"inpt\" takes only TEXT or PHON, not also \"PHON\"."),
        surplus("nmbr LTRL, LTRL", "LTRL", "\"nmbr\" takes only NORM or LTRL, not also \"LTRL\"."),
        surplus("pbas 40 50", "50", "\"pbas\" takes only " + kOfPitch + ", not also \"50\"."),
        surplus("pmod + 1 2", "2", "\"pmod\" takes only " + kOfModulation + ", not also \"2\"."),
        surplus("rate 200 volm 0.5", "volm 0.5", "\"rate\" takes only " + kOfRate + ", not also \"volm\"."),
        surplus("rset 0 0", "0", "\"rset\" takes only 0, not also \"0\"."),
        surplus("slnc 10 ms", "ms", "\"slnc\" takes only whole milliseconds, not also \"ms\"."),
        surplus("sync A B C", "B C", "\"sync\" takes only " + kOfCode + ", not also \"B\"."),
        surplus("vers 1 2", "2", "\"vers\" takes only " + kOfCode + ", not also \"2\"."),
        surplus("volm 1 0", "0", "\"volm\" takes only " + kOfVolume + ", not also \"0\".")));

Wrong unknown(const std::string& list, const std::string& name) {
    return {list, -246, list, "\"" + name + "\" is no command."};
}

INSTANTIATE_TEST_SUITE_P(BadCommand, WrongCommands,
                         testing::Values(unknown("speed 200", "speed"), unknown("rates 200", "rates"),
                                         unknown("rat 200", "rat"), unknown("200", "200"),
                                         unknown("[rate 200", "[rate"), unknown("charLTRL", "charLTRL"),
                                         unknown("r\u00E4te 200", "r\u00E4te"), unknown("+", "+"),
                                         unknown("\U0001F600", "\U0001F600"),
                                         unknown(std::string(1000, 'x'), std::string(40, 'x') + "\u2026")));

INSTANTIATE_TEST_SUITE_P(
    Unimplemented, WrongCommands,
    testing::Values(Wrong{"inpt TUNE", -247, "TUNE", "\"inpt\" with \"TUNE\" is not understood here."},
                    Wrong{"inpt tune", -247, "tune", "\"inpt\" with \"tune\" is not understood here."},
                    Wrong{"xtnd abcd", -247, "abcd", "\"xtnd\" with \"abcd\" is not understood here."},
                    Wrong{"xtnd abcd 1 2 x", -247, "abcd 1 2 x",
                          "\"xtnd\" with \"abcd\" is not understood here."}));

Wrong badDelimiter(const std::string& arguments, const std::string& place, const std::string& shown) {
    return {"dlim " + arguments, -245, place, "\"dlim\" takes " + kOfDelimiters + ", not \"" + shown + "\"."};
}

INSTANTIATE_TEST_SUITE_P(
    BadDelimiters, WrongCommands,
    testing::Values(badDelimiter("( )))", ")))", ")))"), badDelimiter("((( )", "((( )", "((("),
                    badDelimiter("\u00E4\u00F6 \u00FCab", "\u00FCab", "\u00FCab"),
                    badDelimiter("(( ))))", "))))", "))))"),
                    badDelimiter(std::string("\0 )", 3), std::string("\0 )", 3), std::string("\0", 1)),
                    badDelimiter(std::string("( )\0", 4), std::string(")\0", 2), std::string(")\0", 2))));

TEST(EmbeddedText, goesOnBehindAMistake) {
    const EmbeddedText text = parse("[[rate; volm 2; nonsense; emph +]]One [[pbas 0; pmod 3]]two");
    EXPECT_EQ(text.text, "One two");
    ASSERT_EQ(text.commands.size(), 6U);
    EXPECT_EQ(text.commands[3], (PlacedCommand{0, 26, Emphasis{true}}));
    EXPECT_EQ(text.commands[4].at, 4U);
    EXPECT_EQ(text.commands[5], (PlacedCommand{4, 48, SetPitchModulation{absolute(3)}}));
}

// ---- the text that is left

struct Left {
    std::string text;
    std::string spoken;
    std::vector<std::size_t> at; // of the commands
};

void PrintTo(const Left& example, std::ostream* stream) {
    *stream << testing::PrintToString(example.text);
}

class TextLeft : public testing::TestWithParam<Left> {};

TEST_P(TextLeft, isWhatIsSpoken) {
    const EmbeddedText text = parse(GetParam().text);
    EXPECT_EQ(text.text, GetParam().spoken);
    std::vector<std::size_t> at;
    for (const PlacedCommand& placed : text.commands) {
        at.push_back(placed.at);
    }
    EXPECT_EQ(at, GetParam().at);
    EXPECT_TRUE(mistakesIn(text).empty());
}

INSTANTIATE_TEST_SUITE_P(
    Places, TextLeft,
    testing::Values(Left{"", "", {}}, Left{"[[emph +]]", "", {0}}, Left{"[[emph +]]one", "one", {0}},
                    Left{"one[[emph +]]", "one", {3}}, Left{"one [[emph +]] two", "one  two", {4}},
                    Left{"one, [[emph +]](two)", "one, (two)", {5}},
                    Left{"one ]] two [ three ]", "one ]] two [ three ]", {}},
                    // a blank stands where two words would become one
                    Left{"one[[emph +]]two", "one two", {4}},
                    Left{"one[[emph +]][[rset 0]]two", "one two", {4, 4}}, Left{"1[[cmnt]]2", "1 2", {}},
                    Left{"one[[emph +]] two", "one two", {3}}, Left{"one.[[emph +]]two", "one.two", {4}},
                    Left{"one[[emph +]].two", "one.two", {3}}, Left{"e\u0301[[emph +]]e", "e\u0301 e", {3}},
                    Left{"e[[cmnt]]\u0301", "e\u0301", {}},
                    Left{"\u00E4[[emph +]]\u00F6", "\u00E4 \u00F6", {2}},
                    Left{"\U0001D504[[emph +]]\U0001D504", "\U0001D504 \U0001D504", {3}},
                    Left{"\U0001F600[[emph +]]\U0001F600", "\U0001F600\U0001F600", {2}},
                    Left{"a[[rset 0]]b[[rset 0]]c[[rset 0]]d", "a b c d", {2, 4, 6}}));

TEST(EmbeddedText, tellsWherePlacesStandInTheWhole) {
    const std::string whole = "\U0001F600 One[[rate 200]]two [[emph +]][[cmnt \U0001F600]]three[[rset 0]].";
    const EmbeddedText text = parse(whole);
    EXPECT_EQ(text.text, "\U0001F600 One two three.");
    const std::u16string spoken = toUtf16(text.text);
    const std::u16string original = toUtf16(whole);
    std::size_t before = 0;
    for (std::size_t unit = 0; unit < spoken.size(); ++unit) {
        const std::size_t place = text.originalPosition(unit);
        ASSERT_LT(place, original.size());
        EXPECT_TRUE(unit == 0 || place > before) << unit;
        if (unit != 6) {
            EXPECT_EQ(original[place], spoken[unit]) << unit;
        } else {
            EXPECT_EQ(place, 6U); // the blank that isn't in the whole text
        }
        before = place;
    }
    EXPECT_EQ(text.originalPosition(spoken.size()), original.size());
}

TEST(EmbeddedText, withoutCommandsIsTheTextItself) {
    std::string text = "Some text [of any kind] with no commands.";
    const char* const bytes = text.data();
    const EmbeddedText read = parseEmbeddedText(std::move(text), {});
    EXPECT_EQ(read.text.data(), bytes);
    EXPECT_TRUE(read.commands.empty());
    EXPECT_EQ(read.originalPosition(7), 7U);
}

TEST(EmbeddedText, appliesANumberToThePresentOne) {
    EXPECT_DOUBLE_EQ(absolute(3).appliedTo(10), 3);
    EXPECT_DOUBLE_EQ(plus(3).appliedTo(10), 13);
    EXPECT_DOUBLE_EQ(minus(3).appliedTo(10), 7);
}

// ---- lists without an end

struct Unterminated {
    std::string text;
    std::string spoken;
    std::vector<std::size_t> places; // of the mistakes
    std::size_t right;               // commands that are read all the same
};

void PrintTo(const Unterminated& example, std::ostream* stream) {
    *stream << testing::PrintToString(example.text);
}

class UnterminatedLists : public testing::TestWithParam<Unterminated> {};

TEST_P(UnterminatedLists, areMistakesAndSpokenAsTheyStand) {
    const EmbeddedText text = parse(GetParam().text);
    EXPECT_EQ(text.text, GetParam().spoken);
    std::vector<std::size_t> places;
    for (const Found& found : mistakesIn(text)) {
        EXPECT_EQ(found.code, -246);
        EXPECT_EQ(found.message, "The commands behind \"[[\" have no end.");
        places.push_back(found.place);
    }
    EXPECT_EQ(places, GetParam().places);
    EXPECT_EQ(text.commands.size(), GetParam().places.size() + GetParam().right);
}

INSTANTIATE_TEST_SUITE_P(
    Lists, UnterminatedLists,
    testing::Values(Unterminated{"[[", "[[", {0}, 0},
                    Unterminated{"One [[rate 200", "One [[rate 200", {4}, 0},
                    Unterminated{"One [[rate 200]", "One [[rate 200]", {4}, 0},
                    Unterminated{"A [[ b [[emph +]]c", "A [[ b c", {2}, 1},
                    Unterminated{"\U0001F600[[emph +]]b [[emph +", "\U0001F600b [[emph +", {14}, 1},
                    Unterminated{"[[rset 0; cmnt [[emph +]]y", "[[rset 0; cmnt y", {0}, 1},
                    Unterminated{"[[a[[b[[c", "[[a[[b[[c", {0, 3, 6}, 0}));

// ---- delimiters

struct Delimited {
    Delimiters delimiters;
    std::string text;
    std::string spoken;
    std::vector<Command> commands;
    Delimiters behind;
};

void PrintTo(const Delimited& example, std::ostream* stream) {
    *stream << testing::PrintToString(example.text);
}

class DelimitedCommands : public testing::TestWithParam<Delimited> {};

TEST_P(DelimitedCommands, areThoseBetweenTheDelimitersOfTheirPlace) {
    const EmbeddedText text = parse(GetParam().text, GetParam().delimiters);
    EXPECT_EQ(text.text, GetParam().spoken);
    EXPECT_EQ(commandsOf(text), GetParam().commands);
    EXPECT_EQ(text.delimiters, GetParam().behind);
}

const Delimiters kUsual;
const Delimiters kNone{"", ""};
const std::string kTwoNuls(2, '\0');
const std::string kNulAndNul("\0 \0", 3);

INSTANTIATE_TEST_SUITE_P(
    Changes, DelimitedCommands,
    testing::Values(
        // given from outside
        Delimited{{"<", ">"}, "a <emph +>b [[emph -]]", "a b [[emph -]]", {Emphasis{true}}, {"<", ">"}},
        Delimited{{"\u00AB", "\u00BB"}, "\u00ABemph +\u00BBb", "b", {Emphasis{true}}, {"\u00AB", "\u00BB"}},
        Delimited{
            {"$", "$"}, "a $emph +$b $emph -$c", "a b c", {Emphasis{true}, Emphasis{false}}, {"$", "$"}},
        Delimited{{"<command>", "</command>"},
                  "<command>emph +</command>b",
                  "b",
                  {Emphasis{true}},
                  {"<command>", "</command>"}},
        Delimited{kNone, "[[emph +]]a", "[[emph +]]a", {}, kNone},
        Delimited{{"", "]]"}, "[[emph +]]a", "[[emph +]]a", {}, {"", "]]"}},
        Delimited{{"[[", ""}, "[[emph +]]a", "[[emph +]]a", {}, {"[[", ""}},
        // changed in the text, from the end of the list on
        Delimited{kUsual, "[[dlim < >]]a <emph +>b", "a b", {Emphasis{true}}, {"<", ">"}},
        Delimited{kUsual, "[[dlim (( ))]]a ((emph +))b", "a b", {Emphasis{true}}, {"((", "))"}},
        Delimited{kUsual, "[[dlim (( )]]a ((emph +)b", "a b", {Emphasis{true}}, {"((", ")"}},
        Delimited{kUsual, "[[dlim $ $]]a $emph +$b", "a b", {Emphasis{true}}, {"$", "$"}},
        Delimited{kUsual,
                  "[[dlim \u00E4\u00F6 \U0001F600\u00FC]]a \u00E4\u00F6emph +\U0001F600\u00FCb",
                  "a b",
                  {Emphasis{true}},
                  {"\u00E4\u00F6", "\U0001F600\u00FC"}},
        Delimited{
            kUsual, "[[dlim < >; emph +]]a <emph ->b", "a b", {Emphasis{true}, Emphasis{false}}, {"<", ">"}},
        Delimited{kUsual, "[[dlim < >; dlim { }]]a {emph +}<b", "a <b", {Emphasis{true}}, {"{", "}"}},
        Delimited{kUsual, "[[dlim < >]]a <dlim [[ ]]>b [[emph +]]c <d", "a b c <d", {Emphasis{true}}, kUsual},
        Delimited{kUsual, "[[dlim < >]]a [[emph +]]b", "a [[emph +]]b", {}, {"<", ">"}},
        Delimited{kUsual,
                  "[[dlim << ]]a [[emph +]]b",
                  "a b",
                  {Mistake{-252, "\"dlim\" lacks what it takes: " + kOfDelimiters + "."}, Emphasis{true}},
                  kUsual},
        Delimited{kUsual, "[[dlim < >; rset 0]]a <emph +>b", "a b", {Reset{}, Emphasis{true}}, {"<", ">"}},
        // NULs end commands for good
        Delimited{kUsual, "[[dlim " + kTwoNuls + "]]a [[emph +]]", "a [[emph +]]", {}, kNone},
        Delimited{kUsual, "[[dlim " + kNulAndNul + "]]a [[emph +]]", "a [[emph +]]", {}, kNone},
        Delimited{
            kUsual, "[[dlim " + kTwoNuls + " " + kTwoNuls + "]]a [[emph +]]", "a [[emph +]]", {}, kNone},
        Delimited{kUsual,
                  "[[dlim " + kTwoNuls + "; emph +]]a [[emph +]]",
                  "a [[emph +]]",
                  {Emphasis{true}},
                  kNone}));

// ---- any text

// A text without commands again: what stands between the delimiters is gone, all else is there.
TEST(EmbeddedText, ofAnyKindKeepsItsPlaces) {
    const std::vector<std::string> parts{
        "[[",   "]]",   ";",         " ",      "rate 200",   "emph +", "dlim < >", "<", ">", "cmnt",
        "sync", "0x41", "inpt PHON", "volm -", "dlim [[ ]]", "[",      "]",        "+", "9"};
    for (std::uint64_t seed = 0; seed < 2000; ++seed) {
        TextGenerator generator(seed);
        std::u16string whole;
        for (std::size_t count = generator.below(40); count > 0; --count) {
            const std::size_t part = generator.below(parts.size() + 4);
            whole += part < parts.size() ? toUtf16(parts[part]) : generator.next(1 + generator.below(6));
        }
        const EmbeddedText text = parse(toUtf8(whole));
        const std::u16string spoken = toUtf16(text.text);
        const std::u16string original = toUtf16(toUtf8(whole));
        std::size_t next = 0;
        for (std::size_t unit = 0; unit < spoken.size(); ++unit) {
            const std::size_t place = text.originalPosition(unit);
            ASSERT_GE(place, next) << "seed " << seed;
            ASSERT_LT(place, original.size()) << "seed " << seed;
            const bool isStandIn = spoken[unit] == u' ' && original[place] != u' ';
            ASSERT_TRUE(original[place] == spoken[unit] || isStandIn) << "seed " << seed << ", unit " << unit;
            next = place + 1;
        }
        std::size_t at = 0;
        std::size_t before = 0;
        for (const PlacedCommand& placed : text.commands) {
            EXPECT_GE(placed.at, at) << "seed " << seed;
            EXPECT_GE(placed.original, before) << "seed " << seed;
            EXPECT_LE(placed.at, spoken.size()) << "seed " << seed;
            EXPECT_LT(placed.original, original.size()) << "seed " << seed;
            at = placed.at;
            before = placed.original;
        }
    }
}

std::string repeated(const std::string& part, std::size_t times) {
    std::string text;
    for (std::size_t count = 0; count < times; ++count) {
        text += part;
    }
    return text;
}

// Each of these would take hours in the square of its length.
TEST(EmbeddedText, takesTimeInProportionToItsLength) {
    constexpr std::size_t kMany = 300'000;
    EXPECT_EQ(parse(repeated("[[", kMany)).commands.size(), kMany);
    EXPECT_EQ(parse(repeated("[[ a ", kMany) + "]]").commands.size(), kMany);
    EXPECT_EQ(parse(repeated("a[[emph +]]", kMany)).commands.size(), kMany);
    EXPECT_EQ(parse("[[" + repeated("x;", kMany) + "]]").commands.size(), kMany);
    EXPECT_EQ(parse("[[cmnt " + repeated("x;", kMany) + "]]").commands.size(), 0U);
    EXPECT_EQ(parse("[[rate " + repeated("x ", kMany) + "]]").commands.size(), 1U);
    EXPECT_EQ(parse(repeated("a[[dlim < >]]b<dlim [[ ]]>", kMany) + "[[rset 0]]").commands.size(), 1U);
}

} // namespace
