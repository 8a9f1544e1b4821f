#include "engine/protocol/protocol.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>
#include <vector>

using namespace zqm::protocol;

namespace {

std::string withoutLineFeed(std::string line) {
    EXPECT_FALSE(line.empty());
    EXPECT_EQ(line.back(), '\n');
    line.pop_back();
    EXPECT_EQ(line.find('\n'), std::string::npos);
    return line;
}

class RequestRoundTrip : public testing::TestWithParam<Request> {};

TEST_P(RequestRoundTrip, keepsEveryMember) {
    const auto back = decodeRequest(withoutLineFeed(encode(GetParam())));
    ASSERT_TRUE(back);
    EXPECT_EQ(*back, GetParam());
}

const Manner kWholeManner{.rate = 200,
                          .volume = 0.5,
                          .pitchBase = 46,
                          .pitchModulation = 127,
                          .input = InputMode::Phonemes,
                          .characters = SpellingMode::Literal,
                          .numbers = SpellingMode::Normal};

INSTANTIATE_TEST_SUITE_P(
    Requests, RequestRoundTrip,
    testing::Values(
        Request(ListVoices{}), Request(Speak{1, "", "gmw/en", {.rate = 175, .volume = 1}}),
        Request(Speak{2, "a\nb\r\t\"\\\x01 \xEF\xBF\xBD \xF0\x9F\x98\x80", "", kWholeManner}),
        Request(Speak{3, std::string("a\0b", 3), "gmw/en", {.rate = -1}, {"<<", ">"}, Output{"wav", "", ""}}),
        Request(Speak{std::numeric_limits<std::uint64_t>::max(),
                      "x",
                      "v",
                      {.rate = 1e300, .volume = -1e300},
                      {"", ""},
                      Output{"AIFF", ".speech.1",
                             "Gru\xCC\x88\xC3\x9F"
                             "e.AIFF"}}),
        Request(Stop{7}), Request(Stop{7, Boundary::Word}), Request(Stop{7, Boundary::Sentence}),
        Request(Pause{7}), Request(Pause{7, Boundary::Word}), Request(Pause{7, Boundary::Sentence}),
        Request(Continue{7}), Request(Adjust{7, kWholeManner}), Request(Adjust{7, {.volume = 0.5}}),
        Request(Adjust{7, {.input = InputMode::Text, .characters = SpellingMode::Normal}}),
        Request(Adjust{7, {.numbers = SpellingMode::Literal}}), Request(Adjust{7, {}}), Request(SetLexicon{}),
        Request(SetLexicon{{{"en_US", "2024-01-31 12:00:00 +0000", {{"about", "AXbUWt"}, {"", ""}}, {}},
                            {"", "", {}, {{"Dr", "dAAktIXr"}}}}}),
        Request(GetPhonemes{"dog \xF0\x9F\x98\x80", "gmw/en", kWholeManner}), Request(GetPhonemes{}),
        Request(SetCommands{1, {}}),
        Request(SetCommands{std::numeric_limits<std::uint64_t>::max(),
                            {"open the door", "", "caf\xC3\xA9 \"\n", "open the door"}}),
        Request(Ping{}), Request(Listen{1, true, false}), Request(Listen{2, false, true}),
        Request(BlockOthers{true}), Request(BlockOthers{false}), Request(StopListening{7})));

class EventRoundTrip : public testing::TestWithParam<Event> {};

TEST_P(EventRoundTrip, keepsEveryMember) {
    const auto back = decodeEvent(withoutLineFeed(encode(GetParam())));
    ASSERT_TRUE(back);
    EXPECT_EQ(*back, GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Events, EventRoundTrip,
    testing::Values(
        Event(Voices{}),
        Event(Voices{{{"gmw/en-US", "English (America)", "en-US", "male", 0, 175, 39.5, 50},
                      {"sit/cmn", "\xE4\xB8\xAD", "cmn", "female", 30},
                      {"x", "", "", "neuter", 2147483647}},
                     "espeak-ng",
                     "1.51"}),
        Event(Started{1, ""}), Event(Started{1, "no sound server answers"}), Event(Word{1, 0, 5, 0}),
        Event(Word{1, std::uint64_t{1} << 63, 1, 1.0 / 3}), Event(Phoneme{1, 0}),
        Event(Phoneme{1, 41, 2000.0 / 22050}), Event(Phoneme{1, 32767}),
        Event(Problem{1, -245, 17, "the rate is no number", 0.5}), Event(Problem{1, 2147483647, 0, "x"}),
        Event(Problem{1, -2147483647 - 1, 0, "x"}), Event(Sync{1, 0}), Event(Sync{1, 0xFFFFFFFF, 1e9}),
        Event(Paused{7}), Event(Continued{7}), Event(Finished{1, true, "", 12.5}),
        Event(Finished{1, false, ""}), Event(Finished{1, false, "disk full"}), Event(Phonemes{"_d1AOg."}),
        Event(Phonemes{}), Event(CommandsSet{1, {}}),
        Event(CommandsSet{2, {{0, "nothing in it can be spoken"}, {std::uint64_t{1} << 63, "x"}}, 2}),
        Event(CommandsSet{3, {{7, "x"}}, std::uint64_t{1} << 63}), Event(CommandsSet{4, {}, 1}),
        Event(Pong{}), Event(Listening{1, ""}), Event(Listening{1, "no sound server answers", true}),
        Event(Listening{1, "there is no microphone"}), Event(Heard{1, 2, 0, 0, 0}),
        Event(Heard{1, 2, std::uint64_t{1} << 63, 0.5, 1e9}), Event(Rejected{1, 0.1, 0.3}),
        Event(Level{1, -96.3}), Event(Level{1, 0}), Event(EndOfInput{1})));

TEST(Protocol, writesWhatIsNotANumberAsNull) {
    const auto back = decodeRequest(withoutLineFeed(encode(
        Request(Adjust{1, {.rate = std::nan(""), .volume = std::numeric_limits<double>::infinity()}}))));
    ASSERT_TRUE(back);
    const Manner& manner = std::get<Adjust>(*back).manner;
    ASSERT_TRUE(manner.rate);
    EXPECT_TRUE(std::isnan(*manner.rate));
    EXPECT_EQ(manner.volume, std::numeric_limits<double>::max());
}

// These are written by hand.
TEST(Protocol, keepsAnyTimeOfWordsAndPhonemes) {
    for (const double at : {0.0, 0.1, 1e22, 1e300, 5e-324, 123456.789, std::numeric_limits<double>::max()}) {
        const auto word = decodeEvent(withoutLineFeed(encode(Event(Word{1, 2, 3, at}))));
        ASSERT_TRUE(word) << at;
        EXPECT_EQ(std::get<Word>(*word).at, at);
        const auto phoneme = decodeEvent(withoutLineFeed(encode(Event(Phoneme{1, 2, at}))));
        ASSERT_TRUE(phoneme) << at;
        EXPECT_EQ(std::get<Phoneme>(*phoneme).at, at);
    }
    const auto endless = decodeEvent(withoutLineFeed(encode(Event(Word{1, 2, 3, HUGE_VAL}))));
    ASSERT_TRUE(endless);
    EXPECT_EQ(std::get<Word>(*endless).at, std::numeric_limits<double>::max());
    EXPECT_EQ(encode(Event(Phoneme{1, 2, std::nan("")})),
              "{\"type\":\"phoneme\",\"utterance\":1,\"opcode\":2,\"at\":null}\n");
}

TEST(Protocol, writesBrokenBytesAsReplacementCharacters) {
    const auto back = decodeRequest(withoutLineFeed(encode(Request(Speak{1, "a\xFFz", "v"}))));
    ASSERT_TRUE(back);
    EXPECT_EQ(std::get<Speak>(*back).text, "a\xEF\xBF\xBDz");
}

TEST(Protocol, takesMembersInAnyOrderAndBlanksBetween) {
    const auto stop = decodeRequest(R"( { "utterance" : 7 , "boundary":"word", "type" : "stop" } )");
    ASSERT_TRUE(stop);
    EXPECT_EQ(std::get<Stop>(*stop).utterance, 7U);
}

TEST(Protocol, takesATextOfTenMegabytes) {
    const Request request(Speak{1, std::string(10'000'000, 'a'), "v"});
    const auto back = decodeRequest(withoutLineFeed(encode(request)));
    ASSERT_TRUE(back);
    EXPECT_TRUE(*back == request);
}

const std::vector<std::string> kMalformedLines{
    "",
    " ",
    "null",
    "7",
    "[]",
    "{}",
    "\"continue\"",
    "garbage",
    R"({"type":"continue","utterance":7)",
    R"({"type":"continue","utterance":7}})",
    R"({"type":"continue","utterance":7} {"type":"continue","utterance":7})",
    R"({"type":"continue","utterance":7,})",
    R"({'type':'continue','utterance':7})",
    R"({"type":"explode","utterance":7})",
    R"({"type":7,"utterance":7})",
    R"({"utterance":7})",
    R"([{"type":"continue","utterance":7}])",
    std::string("{\"type\":\"continue\",\"utterance\":7}\0", 34),
    std::string(100'000, '['),
    std::string(100'000, '{'),
};

class MalformedLine : public testing::TestWithParam<std::string> {};

TEST_P(MalformedLine, isNoMessage) {
    EXPECT_FALSE(decodeRequest(GetParam()));
    EXPECT_FALSE(decodeEvent(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Lines, MalformedLine, testing::ValuesIn(kMalformedLines));

// Each of these differs from a good line in one way.
class MalformedRequest : public testing::TestWithParam<std::string> {};

TEST_P(MalformedRequest, isRefused) {
    EXPECT_FALSE(decodeRequest(GetParam()));
}

std::string speakWith(const std::string& members) {
    return R"({"type":"speak","utterance":1,)" + members + "}";
}

const std::string kUsual = R"("manner":{},"delimiters":{"prefix":"[[","suffix":"]]"})";

INSTANTIATE_TEST_SUITE_P(
    Members, MalformedRequest,
    testing::Values(
        R"({"type":"voices","utterance":1})", R"({"type":"continue"})",
        R"({"type":"continue","utterance":0})", R"({"type":"continue","utterance":-1})",
        R"({"type":"continue","utterance":1.0})", R"({"type":"continue","utterance":1.5})",
        R"({"type":"continue","utterance":"1"})", R"({"type":"continue","utterance":null})",
        R"({"type":"continue","utterance":true})", R"({"type":"continue","utterance":18446744073709551616})",
        R"({"type":"continue","utterance":1,"more":1})", R"({"type":"continue","utterance":1,"utterance":1})",
        R"({"type":"continue","type":"continue","utterance":1})",
        R"({"type":"word","utterance":1,"position":0,"length":1})",
        R"({"type":"adjust","manner":{"rate":1}})", R"({"type":"adjust","utterance":1})",
        R"({"type":"adjust","utterance":1,"rate":1})", R"({"type":"stop","utterance":1})",
        R"({"type":"stop","utterance":1,"boundary":"paragraph"})",
        R"({"type":"stop","utterance":1,"boundary":0})", R"({"type":"stop","boundary":"word"})",
        R"({"type":"pause","utterance":1})", R"({"type":"pause","utterance":0,"boundary":"word"})",
        R"({"type":"continue"})", R"({"type":"continue","utterance":1,"boundary":"word"})",
        speakWith(R"("voice":"v",)" + kUsual), speakWith(R"("text":"t",)" + kUsual),
        speakWith(R"("text":1,"voice":"v",)" + kUsual), speakWith(R"("text":"t","voice":null,)" + kUsual),
        speakWith("\"text\":\"\xFF\",\"voice\":\"v\"," + kUsual),
        speakWith("\"text\":\"\xED\xA0\x80\",\"voice\":\"v\"," + kUsual),
        speakWith(R"("text":"\ud800","voice":"v",)" + kUsual),
        speakWith("\"text\":\"a\tb\",\"voice\":\"v\"," + kUsual),
        speakWith(R"("text":"t","voice":"v","pitch":1,)" + kUsual),
        speakWith(R"("text":"t","voice":"v","manner":{})"),
        speakWith(R"("text":"t","voice":"v","delimiters":{"prefix":"[[","suffix":"]]"})"),
        R"({"type":"lexicon"})", R"({"type":"lexicon","dictionaries":{}})",
        R"({"type":"lexicon","dictionaries":[1]})", R"({"type":"phonemes","text":"t"})",
        R"({"type":"phonemes","voice":"v"})", R"({"type":"phonemes","text":1,"voice":"v","manner":{}})",
        R"({"type":"phonemes","text":"t","voice":"v"})",
        R"({"type":"phonemes","text":"t","voice":"v","manner":1})"));

class MalformedManner : public testing::TestWithParam<std::string> {};

TEST_P(MalformedManner, isRefused) {
    const std::string start = R"({"type":"adjust","utterance":1,"manner":)";
    ASSERT_TRUE(decodeRequest(start + R"({"rate":1,"input":"TEXT"}})"));
    EXPECT_FALSE(decodeRequest(start + GetParam() + "}"));
}

INSTANTIATE_TEST_SUITE_P(Manners, MalformedManner,
                         testing::Values("null", "[]", "1", R"({"pitch":1})", R"({"rate":"1"})",
                                         R"({"rate":true})", R"({"rate":1e999})", R"({"rate":1,"rate":1})",
                                         R"({"volume":[]})", R"({"volume":"1"})", R"({"pitchBase":{}})",
                                         R"({"pitchModulation":false})", R"({"input":"TUNE"})",
                                         R"({"input":"text"})", R"({"input":null})",
                                         R"({"characters":"TEXT"})", R"({"characters":1})",
                                         R"({"numbers":"PHON"})", R"({"numbers":[]})"));

class MalformedDelimiters : public testing::TestWithParam<std::string> {};

TEST_P(MalformedDelimiters, areRefused) {
    const std::string start = R"("text":"t","voice":"v","manner":{},"delimiters":)";
    ASSERT_TRUE(decodeRequest(speakWith(start + R"({"prefix":"<","suffix":""})")));
    EXPECT_FALSE(decodeRequest(speakWith(start + GetParam())));
}

INSTANTIATE_TEST_SUITE_P(Delimiters, MalformedDelimiters,
                         testing::Values("null", "[]", "{}", "\"[[\"", R"({"prefix":"["})",
                                         R"({"suffix":"]"})", R"({"prefix":1,"suffix":"]"})",
                                         R"({"prefix":"[","suffix":null})",
                                         R"({"prefix":"[","suffix":"]","more":1})"));

class MalformedDictionary : public testing::TestWithParam<std::string> {};

TEST_P(MalformedDictionary, isRefused) {
    const auto lexicon = [](const std::string& members) {
        return R"({"type":"lexicon","dictionaries":[{)" + members + "}]}";
    };
    ASSERT_TRUE(decodeRequest(lexicon(
        R"("locale":"","modificationDate":"","pronunciations":[{"spelling":"a","phonemes":"b"}],"abbreviations":[])")));
    EXPECT_FALSE(decodeRequest(lexicon(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(
    Dictionaries, MalformedDictionary,
    testing::Values(
        R"("modificationDate":"","pronunciations":[],"abbreviations":[])",
        R"("locale":"","pronunciations":[],"abbreviations":[])",
        R"("locale":"","modificationDate":"","abbreviations":[])",
        R"("locale":"","modificationDate":"","pronunciations":[])",
        R"("locale":1,"modificationDate":"","pronunciations":[],"abbreviations":[])",
        R"("locale":"","modificationDate":1,"pronunciations":[],"abbreviations":[])",
        R"("locale":"","modificationDate":"","pronunciations":{},"abbreviations":[])",
        R"("locale":"","modificationDate":"","pronunciations":[],"abbreviations":null)",
        R"("locale":"","modificationDate":"","pronunciations":[],"abbreviations":[],"more":1)",
        R"("locale":"","modificationDate":"","pronunciations":[{"spelling":"a"}],"abbreviations":[])",
        R"("locale":"","modificationDate":"","pronunciations":[{"phonemes":"a"}],"abbreviations":[])",
        R"("locale":"","modificationDate":"","pronunciations":[1],"abbreviations":[])",
        R"("locale":"","modificationDate":"","pronunciations":[{"spelling":"a","phonemes":"b","c":1}],"abbreviations":[])",
        R"("locale":"","modificationDate":"","pronunciations":[{"spelling":"a","phonemes":"b","phonemes":"c"}],"abbreviations":[])"));

class MalformedOutput : public testing::TestWithParam<std::string> {};

TEST_P(MalformedOutput, isRefused) {
    const std::string start = R"("text":"t","voice":"v",)" + kUsual + R"(,"output":)";
    ASSERT_TRUE(
        decodeRequest(speakWith(start + R"({"extension":"wav","temporaryName":".t","finalName":"f.wav"})")));
    EXPECT_FALSE(decodeRequest(speakWith(start + GetParam())));
}

INSTANTIATE_TEST_SUITE_P(
    Outputs, MalformedOutput,
    testing::Values("null", "[]", "{}", "\"f.wav\"", R"({"temporaryName":".t","finalName":"f"})",
                    R"({"extension":"wav","finalName":"f"})", R"({"extension":"wav","temporaryName":".t"})",
                    R"({"extension":1,"temporaryName":".t","finalName":"f"})",
                    R"({"extension":"wav","temporaryName":".t","finalName":"f","more":1})",
                    R"({"extension":"wav","extension":"wav","temporaryName":".t","finalName":"f"})",
                    R"({"extension":"wav","temporaryName":".t","finalName":""})",
                    R"({"extension":"wav","temporaryName":"a/b","finalName":"f"})",
                    R"({"extension":"wav","temporaryName":".t","finalName":"../f"})",
                    R"({"extension":"wav","temporaryName":".","finalName":"f"})",
                    R"({"extension":"wav","temporaryName":".t","finalName":".."})",
                    R"({"extension":"wav","temporaryName":".t","finalName":"f\u0000"})"));

class MalformedEvent : public testing::TestWithParam<std::string> {};

TEST_P(MalformedEvent, isRefused) {
    EXPECT_FALSE(decodeEvent(GetParam()));
}

std::string voicesWith(const std::string& list) {
    return R"({"type":"voices","synthesizer":"s","version":"1","voices":)" + list + "}";
}

std::string voiceWith(const std::string& members) {
    return voicesWith("[{" + members + "}]");
}

const std::string kVoicesManner = R"("rate":175,"pitchBase":40,"pitchModulation":50)";

TEST(Protocol, takesTheVoiceThatTheMalformedOnesDifferFrom) {
    EXPECT_TRUE(decodeEvent(
        voiceWith(R"("identifier":"a","name":"","language":"","gender":"male","age":0,)" + kVoicesManner)));
}

INSTANTIATE_TEST_SUITE_P(
    Members, MalformedEvent,
    testing::Values(
        R"({"type":"voices"})", R"({"type":"stop","utterance":1,"boundary":"word"})", voicesWith("{}"),
        voicesWith("null"), voicesWith("[1]"), voicesWith("[{}]"),
        R"({"type":"voices","voices":[],"synthesizer":"s"})",
        R"({"type":"voices","voices":[],"version":"1"})",
        voiceWith(R"("name":"","language":"","gender":"male","age":0,)" + kVoicesManner),
        voiceWith(R"("identifier":"","name":"","language":"","gender":"male","age":0,)" + kVoicesManner),
        voiceWith(R"("identifier":"a","name":1,"language":"","gender":"male","age":0,)" + kVoicesManner),
        voiceWith(R"("identifier":"a","name":"","language":"","gender":"other","age":0,)" + kVoicesManner),
        voiceWith(R"("identifier":"a","name":"","language":"","gender":"male","age":-1,)" + kVoicesManner),
        voiceWith(R"("identifier":"a","name":"","language":"","gender":"male","age":2147483648,)" +
                  kVoicesManner),
        voiceWith(R"("identifier":"a","name":"","language":"","gender":"male","age":0,"x":0,)" +
                  kVoicesManner),
        voiceWith(R"("identifier":"a","name":"","language":"","gender":"male","age":0,"rate":1)"),
        voiceWith(
            R"("identifier":"a","name":"","language":"","gender":"male","age":0,"rate":"1","pitchBase":1,"pitchModulation":1)"),
        R"({"type":"started"})", R"({"type":"started","utterance":0})",
        R"({"type":"started","utterance":1,"error":""})", R"({"type":"started","utterance":1,"error":null})",
        R"({"type":"started","utterance":1,"completed":true})",
        R"({"type":"word","utterance":1,"position":18446744073709551615,"length":1,"at":0})",
        R"({"type":"paused"})", R"({"type":"paused","utterance":1,"boundary":"word"})",
        R"({"type":"continued","utterance":0})", R"({"type":"phonemes"})",
        R"({"type":"phonemes","text":"t","voice":"v"})",
        R"({"type":"finished","utterance":1,"completed":true,"error":"why","at":0})"));

// ---- what is heard and listening: every member, missing, surplus, twice and of the wrong kind

struct Kind {
    std::string good;               // a value
    std::vector<std::string> wrong; // values of no such member
};

const Kind kNumber{"1", {"0", "-1", "1.0", "\"1\"", "null", "true", "[1]", "{}", "18446744073709551616"}};
const Kind kIndex{"0", {"-1", "0.0", "\"0\"", "null", "false", "[0]", "{}", "18446744073709551616"}};
const Kind kOpcode{"41", {"-1", "32768", "1.0", "\"1\"", "null", "[]", "{}"}};
const Kind kUInt32{"4294967295", {"-1", "4294967296", "1.0", "\"A\"", "null", "[]", "{}"}};
const Kind kCode{"-245",
                 {"-2147483649", "2147483648", "9223372036854775808", "1.5", "\"1\"", "null", "[]", "{}"}};
const Kind kFalse{"false", {"1", "0", "null", "\"false\"", "[]", "{}"}};
const Kind kFlag{"true", {"1", "0", "null", "\"true\"", "[]", "{}"}};
const Kind kText{"\"x\"", {"\"\"", "1", "null", "true", "[\"x\"]", "{}", "\"\\ud800\"", "\"\xFF\""}};
const Kind kTexts{R"(["a",""])", {"{}", "null", "\"a\"", "1", "[1]", "[null]", "[[\"a\"]]", "[\"\xFF\"]"}};
const Kind kTime{"1.5", {"-0.5", "null", "\"1\"", "true", "[]", "{}", "1e999"}};
const Kind kLevel{"-20.5", {"null", "\"1\"", "true", "[]", "{}", "-1e999"}};
const Kind kProblems{R"([{"command":0,"message":"x"}])",
                     {"{}", "null", "1", "[1]", "[{}]", R"([{"command":0}])", R"([{"message":"x"}])",
                      R"([{"command":-1,"message":"x"}])", R"([{"command":0,"message":""}])",
                      R"([{"command":0,"message":1}])", R"([{"command":0,"message":"x","more":1}])",
                      R"([{"command":0,"command":0,"message":"x"}])"}};

struct Layout {
    std::string type;
    bool isRequest;
    std::vector<std::pair<std::string, Kind>> members;
    std::string optional{}; // one of them that may be missing
};

const std::vector<Layout> kLayouts{
    {"word", false, {{"utterance", kNumber}, {"position", kIndex}, {"length", kNumber}, {"at", kTime}}},
    {"phoneme", false, {{"utterance", kNumber}, {"opcode", kOpcode}, {"at", kTime}}},
    {"problem",
     false,
     {{"utterance", kNumber}, {"code", kCode}, {"position", kIndex}, {"message", kText}, {"at", kTime}}},
    {"sync", false, {{"utterance", kNumber}, {"message", kUInt32}, {"at", kTime}}},
    {"finished",
     false,
     {{"utterance", kNumber}, {"completed", kFalse}, {"error", kText}, {"at", kTime}},
     "error"},
    {"ping", true, {}},
    {"pong", false, {}},
    {"commands", true, {{"list", kNumber}, {"commands", kTexts}}},
    {"listen", true, {{"session", kNumber}, {"reportsLevel", kFlag}, {"fromFile", kFlag}}},
    {"blockOthers", true, {{"blocks", kFlag}}},
    {"stopListening", true, {{"session", kNumber}}},
    {"commandsSet", false, {{"list", kNumber}, {"problems", kProblems}, {"refused", kNumber}}},
    {"listening", false, {{"session", kNumber}, {"error", kText}, {"wantsNewEngine", kFlag}}, "error"},
    {"heard",
     false,
     {{"session", kNumber}, {"list", kNumber}, {"command", kIndex}, {"begin", kTime}, {"end", kTime}}},
    {"rejected", false, {{"session", kNumber}, {"begin", kTime}, {"end", kTime}}},
    {"level", false, {{"session", kNumber}, {"decibels", kLevel}}},
    {"endOfInput", false, {{"session", kNumber}}},
};

class MessageLine : public testing::TestWithParam<Layout> {
protected:
    using Values = std::vector<std::pair<std::string, std::string>>;

    [[nodiscard]] static Values goodValues() {
        Values values;
        for (const auto& [name, kind] : GetParam().members) {
            values.emplace_back(name, kind.good);
        }
        return values;
    }

    // In which direction it is read, and in which it is not.
    [[nodiscard]] static std::pair<bool, bool> taken(const Values& values) {
        std::string line = R"({"type":")" + GetParam().type + '"';
        for (const auto& [name, value] : values) {
            line.append(",\"").append(name).append("\":").append(value);
        }
        line += '}';
        const bool asRequest = decodeRequest(line).has_value();
        const bool asEvent = decodeEvent(line).has_value();
        return GetParam().isRequest ? std::pair(asRequest, asEvent) : std::pair(asEvent, asRequest);
    }

    static constexpr std::pair<bool, bool> kTaken{true, false};
    static constexpr std::pair<bool, bool> kRefused{false, false};
};

TEST_P(MessageLine, isTakenInItsDirectionOnly) {
    EXPECT_EQ(taken(goodValues()), kTaken);
}

TEST_P(MessageLine, lacksNoMember) {
    for (std::size_t left = 0; left < GetParam().members.size(); ++left) {
        Values values = goodValues();
        const std::string name = values[left].first;
        values.erase(values.begin() + static_cast<std::ptrdiff_t>(left));
        EXPECT_EQ(taken(values), name == GetParam().optional ? kTaken : kRefused) << name;
    }
}

TEST_P(MessageLine, hasNoSurplusMember) {
    Values values = goodValues();
    values.emplace_back("more", "1");
    EXPECT_EQ(taken(values), kRefused);
    for (const auto& [name, value] : goodValues()) {
        Values twice = goodValues();
        twice.emplace_back(name, value);
        EXPECT_EQ(taken(twice), kRefused) << name;
    }
}

TEST_P(MessageLine, hasNoMemberOfAnotherKind) {
    for (std::size_t changed = 0; changed < GetParam().members.size(); ++changed) {
        for (const std::string& wrong : GetParam().members[changed].second.wrong) {
            Values values = goodValues();
            values[changed].second = wrong;
            EXPECT_EQ(taken(values), kRefused) << values[changed].first << ' ' << wrong;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Layouts, MessageLine, testing::ValuesIn(kLayouts),
                         [](const auto& each) { return each.param.type; });

TEST(Protocol, tellsNoMoreCommandsThanWereRefused) {
    const std::string line =
        R"({"type":"commandsSet","list":1,"problems":[{"command":0,"message":"x"},{"command":1,"message":"x"}],"refused":)";
    EXPECT_TRUE(decodeEvent(line + "3}"));
    EXPECT_TRUE(decodeEvent(line + "2}"));
    EXPECT_FALSE(decodeEvent(line + "1}"));
    EXPECT_FALSE(decodeEvent(line + "0}"));
}

TEST(Protocol, knowsNoPhraseThatEndsBeforeItBegins) {
    const std::string begin = R"({"type":"rejected","session":1,"begin":2,"end":)";
    EXPECT_TRUE(decodeEvent(begin + "2}"));
    EXPECT_FALSE(decodeEvent(begin + "1.9}"));
}

} // namespace
