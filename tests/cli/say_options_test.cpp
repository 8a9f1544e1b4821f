#include "cli/say/say_options.h"

#include "tests/cli/wrong_use.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

namespace zqm::cli {
namespace {

using testing::HasSubstr;

SayOptions parse(const std::vector<const char*>& arguments) {
    return std::get<SayOptions>(parseSayOptions(arguments));
}

TEST(SayOptions, NothingGivenMeansStandardInputAloud) {
    const SayOptions options = parse({});
    EXPECT_FALSE(options.text);
    EXPECT_EQ(options.input, "-");
    EXPECT_FALSE(options.output);
    EXPECT_FALSE(options.fallback);
    EXPECT_FALSE(options.voice);
    EXPECT_FALSE(options.rate);
    EXPECT_FALSE(options.volume);
    EXPECT_FALSE(options.events);
    EXPECT_FALSE(options.json);
    EXPECT_FALSE(options.format);
    EXPECT_FALSE(options.subtitles);
    EXPECT_FALSE(options.timeline);
    EXPECT_FALSE(options.device);
    EXPECT_FALSE(options.listsFormats);
    EXPECT_FALSE(options.listsDevices);
}

TEST(SayOptions, EveryOptionIsTaken) {
    const SayOptions options =
        parse({"-o", "out.wav", "-v", "de", "--rate", "200", "--volume", "0.5", "--events", "--format",
               "FLAC", "--subtitles", "out.VTT", "--timeline", "out.svg", "Guten", "Tag"});
    EXPECT_EQ(options.text, "Guten Tag");
    EXPECT_EQ(options.output, "out.wav");
    EXPECT_EQ(options.voice, "de");
    EXPECT_EQ(options.rate, 200);
    EXPECT_EQ(options.volume, 0.5);
    EXPECT_TRUE(options.events);
    EXPECT_EQ(options.format, "FLAC");
    EXPECT_EQ(options.subtitles, "out.VTT");
    EXPECT_EQ(options.timeline, "out.svg");
    EXPECT_EQ(parse({"--device", "speakers", "Hello"}).device, "speakers");
    EXPECT_EQ(parse({"--fallback", "f.wav", "Hello"}).fallback, "f.wav");
    EXPECT_TRUE(parse({"--json", "Hello"}).json);
    EXPECT_TRUE(parse({"--formats"}).listsFormats);
    EXPECT_TRUE(parse({"--devices"}).listsDevices);
}

TEST(SayOptions, LongFormsWithEqualSigns) {
    const SayOptions options =
        parse({"--output=a=b.wav", "--voice=en-us", "--rate=50", "--volume=1", "--file=in.txt"});
    EXPECT_EQ(options.output, "a=b.wav");
    EXPECT_EQ(parse({"-o", "=.wav", "--", "-o=x"}).output, "=.wav");
    EXPECT_EQ(options.voice, "en-us");
    EXPECT_EQ(options.rate, 50);
    EXPECT_EQ(options.volume, 1);
    EXPECT_EQ(options.input, "in.txt");
    EXPECT_FALSE(options.text);
}

TEST(SayOptions, OptionsMayStandBetweenTheWords) {
    const SayOptions options = parse({"Hello", "--rate", "200", "world"});
    EXPECT_EQ(options.text, "Hello world");
    EXPECT_EQ(options.rate, 200);
}

class SayOptionsText : public testing::TestWithParam<const char*> {};

TEST_P(SayOptionsText, IsTakenAsItStands) {
    EXPECT_EQ(parse({GetParam()}).text, GetParam());
}

TEST_P(SayOptionsText, IsTakenAsItStandsAfterDashes) {
    EXPECT_EQ(parse({"--events", "--", GetParam()}).text, GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, SayOptionsText,
                         testing::Values("say", "help", "{}", "[a,b]", "[]", "%%", "a b", "a,b", "++x",
                                         "\"quoted\"", "'single'", "back\\slash", "tab\there", "line\nbreak",
                                         "grüße", "=", "+5"));

class SayOptionsDashText : public testing::TestWithParam<const char*> {};

TEST_P(SayOptionsDashText, IsTextAfterDashes) {
    EXPECT_EQ(parse({"--", GetParam()}).text, GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, SayOptionsDashText,
                         testing::Values("-5 degrees", "-", "--", "--rate", "-o", "-h"));

TEST(SayOptions, ADashAloneMeansStandardInput) {
    const SayOptions options = parse({"-"});
    EXPECT_FALSE(options.text);
    EXPECT_EQ(options.input, "-");
}

TEST(SayOptions, ADashAmongWordsIsAWord) {
    EXPECT_EQ(parse({"this", "-", "that"}).text, "this - that");
}

TEST(SayOptions, AnEmptyTextIsAText) {
    EXPECT_EQ(parse({""}).text, "");
}

TEST(SayOptions, HelpNamesEveryOption) {
    for (const char* option : {"-h", "--help"}) {
        const auto parsed = parseSayOptions(std::vector<const char*>{option});
        ASSERT_TRUE(std::holds_alternative<std::string>(parsed));
        const std::string& help = std::get<std::string>(parsed);
        EXPECT_THAT(help, HasSubstr("Usage: zqmspeech say [OPTIONS] [TEXT...]"));
        for (const char* name : {"-f,--file", "-o,--output", "--fallback", "-v,--voice", "--rate", "--volume",
                                 "--format ", "--formats", "--device ", "--devices", "--events", "--json",
                                 "50 to 500", "0 to 1", "130 for Ctrl-C"}) {
            EXPECT_THAT(help, HasSubstr(name));
        }
    }
}

class SayOptionsWrongUse : public testing::TestWithParam<WrongUse> {};

TEST_P(SayOptionsWrongUse, IsAUsageErrorInOneLine) {
    expectComplaint(parse, GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    All, SayOptionsWrongUse,
    testing::Values(
        WrongUse{{"--loud", "x"}, "--loud is not an option"},
        WrongUse{{"-5", "degrees"}, "-5 is not an option"}, WrongUse{{"x", "-x"}, "-x is not an option"},
        WrongUse{{"-o"}, "--output: its FILE is missing"},
        WrongUse{{"--rate"}, "--rate: its NUMBER is missing"},
        WrongUse{{"--rate", "fast", "x"}, "fast is not a number from 50 to 500"},
        WrongUse{{"--rate", "nan", "x"}, "nan is not a number"},
        WrongUse{{"--rate", "inf", "x"}, "inf is not a number"},
        WrongUse{{"--rate", "49.9", "x"}, "49.9 is not a number"},
        WrongUse{{"--rate", "500.1", "x"}, "500.1 is not a number"},
        WrongUse{{"--rate", "1e999", "x"}, "1e999 is not a number"},
        WrongUse{{"--rate", "-200", "x"}, "--rate"}, WrongUse{{"--rate", "200x", "x"}, "200x is not"},
        WrongUse{{"--rate", "200,5", "x"}, "200,5 is not"}, WrongUse{{"--rate", "", "x"}, "--rate"},
        WrongUse{{"--volume", "1.01", "x"}, "1.01 is not a number from 0 to 1"},
        WrongUse{{"--volume=-0.1", "x"}, "-0.1 is not a number"},
        WrongUse{{"--volume", "nan", "x"}, "nan is not a number"}, WrongUse{{"-o", "", "x"}, "it is empty"},
        WrongUse{{"-f", ""}, "it is empty"}, WrongUse{{"-v", "", "x"}, "it is empty"},
        WrongUse{{"--fallback", "", "x"}, "it is empty"},
        WrongUse{{"--output=", "x"}, "--output: it is empty"},
        WrongUse{{"--rate=", "x"}, "--rate: it is empty"}, WrongUse{{"--json=", "x"}, "--json: it is empty"},
        WrongUse{{"-f", "file", "text"}, "can't both be given"},
        WrongUse{{"-f", "file", "-"}, "can't both be given"},
        WrongUse{{"-f", "file", "--", "text"}, "can't both be given"},
        WrongUse{{"-o", "a.wav", "-o", "b.wav", "x"}, "--output can't be given twice, as a.wav and as b.wav"},
        WrongUse{{"--rate", "90", "--rate=100", "x"}, "--rate can't be given twice, as 90 and as 100"},
        WrongUse{{"--fallback", "a", "--fallback", "b", "x"}, "--fallback can't be given twice"},
        WrongUse{{"-o=a.wav", "x"}, "-o=a.wav has an = that belongs to a long name: --output=a.wav"},
        WrongUse{{"-h=x"}, "-h=x has an = that belongs to a long name"},
        WrongUse{{"-x=x"}, "-x=x is not an option"},
        WrongUse{{"--fallback", "-", "x"}, "--fallback: it is a file, not standard output"},
        WrongUse{{"--fallback", "a.wav", "-o", "b.wav", "x"}, "--fallback and --output can't both be given"},
        WrongUse{{"--events", "--json", "x"}, "--events and --json can't both be given"},
        WrongUse{{"--formats", "x"}, "--formats only prints a list: \"x\" can't be given with it"},
        WrongUse{{"--formats", "--rate", "90"}, "--formats only prints a list: --rate can't be given"},
        WrongUse{{"--devices", "-f", "x"}, "--devices only prints a list: --file can't be given with it"},
        WrongUse{{"--devices", "--formats"}, "only prints a list: --"},
        WrongUse{{"-f", "a.txt", "-o", "./a.txt", "--format", "wav"}, "--file and --output name the same"},
        WrongUse{{"-f", "a.txt", "--fallback", "a.txt"}, "--file and --fallback name the same file"},
        WrongUse{{"--rate", "0x64", "x"}, "0x64 is not a number"},
        WrongUse{{"-o", "x.wav", "--format", "xyz", "x"}, "xyz is not a sound file format"},
        WrongUse{{"-o", "x.wav", "--format", "", "x"}, "is not a sound file format"},
        WrongUse{{"--format", "wav", "x"}, "--format needs -o FILE"},
        WrongUse{{"-o", "x.wav", "--device", "y", "x"},
                 "--device and --output can't both be given: a file is not played"},
        WrongUse{{"--device", "", "x"}, "it is empty"},
        WrongUse{{"-o", "-", "--events", "x"}, "can't both go to standard output"},
        WrongUse{{"-o", "-", "--json", "x"}, "can't both go to standard output"},
        WrongUse{{"--subtitles", "x.vtt", "x"}, "--subtitles needs -o FILE"},
        WrongUse{{"--timeline", "x.svg", "--fallback", "f.wav", "x"}, "--timeline needs -o FILE"},
        WrongUse{{"-o", "a.vtt", "--format", "wav", "--subtitles", "a.vtt", "x"}, "name the same file"},
        WrongUse{{"-o", "a.svg", "--format", "wav", "--timeline", "./b/../a.svg", "x"}, "name the same file"},
        WrongUse{{"-o", "a.wav", "--subtitles", "a.txt", "x"}, "a.txt does not end in .vtt, .srt or .lrc"},
        WrongUse{{"-o", "a.wav", "--subtitles", "", "x"}, "does not end in .vtt, .srt or .lrc"},
        WrongUse{{"-o", "a.wav", "--timeline", "a.png", "x"}, "a.png does not end in .svg"},
        WrongUse{{"--events=maybe", "x"}, "--events"}, WrongUse{{"--events=2", "x"}, "--events"}));

} // namespace
} // namespace zqm::cli
