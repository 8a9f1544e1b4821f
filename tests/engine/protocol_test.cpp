#include "engine/protocol.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

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

INSTANTIATE_TEST_SUITE_P(
    Requests, RequestRoundTrip,
    testing::Values(Request(ListVoices{}), Request(Speak{1, "", "gmw/en", 175, 1, {}}),
                    Request(Speak{2, "a\nb\r\t\"\\\x01 \xEF\xBF\xBD \xF0\x9F\x98\x80", "", 0.25, 0, {}}),
                    Request(Speak{3, std::string("a\0b", 3), "gmw/en", -1, 2, Output{"wav", "", ""}}),
                    Request(Speak{std::numeric_limits<std::uint64_t>::max(), "x", "v", 1e300, -1e300,
                                  Output{"AIFF", ".speech.1",
                                         "Gru\xCC\x88\xC3\x9F"
                                         "e.AIFF"}}),
                    Request(Stop{7}), Request(Adjust{7, 200.0, {}}), Request(Adjust{7, {}, 0.5}),
                    Request(Adjust{7, 1.0, 0.1}), Request(Adjust{7, {}, {}})));

class EventRoundTrip : public testing::TestWithParam<Event> {};

TEST_P(EventRoundTrip, keepsEveryMember) {
    const auto back = decodeEvent(withoutLineFeed(encode(GetParam())));
    ASSERT_TRUE(back);
    EXPECT_EQ(*back, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Events, EventRoundTrip,
                         testing::Values(Event(Voices{}),
                                         Event(Voices{{{"gmw/en-US", "English (America)", "en-US", "male", 0},
                                                       {"sit/cmn", "\xE4\xB8\xAD", "cmn", "female", 30},
                                                       {"x", "", "", "neuter", 2147483647}}}),
                                         Event(Started{1, ""}), Event(Started{1, "no sound server answers"}),
                                         Event(Word{1, 0, 5}), Event(Word{1, std::uint64_t{1} << 63, 1}),
                                         Event(Finished{1, true, ""}), Event(Finished{1, false, ""}),
                                         Event(Finished{1, false, "disk full"})));

TEST(Protocol, writesWhatIsNotANumberAsNull) {
    const auto back = decodeRequest(withoutLineFeed(
        encode(Request(Speak{1, "x", "v", std::nan(""), std::numeric_limits<double>::infinity(), {}}))));
    ASSERT_TRUE(back);
    EXPECT_TRUE(std::isnan(std::get<Speak>(*back).rate));
    EXPECT_EQ(std::get<Speak>(*back).volume, std::numeric_limits<double>::max());
}

TEST(Protocol, writesBrokenBytesAsReplacementCharacters) {
    const auto back = decodeRequest(withoutLineFeed(encode(Request(Speak{1, "a\xFFz", "v", 1, 1, {}}))));
    ASSERT_TRUE(back);
    EXPECT_EQ(std::get<Speak>(*back).text, "a\xEF\xBF\xBDz");
}

TEST(Protocol, takesMembersInAnyOrderAndBlanksBetween) {
    const auto stop = decodeRequest(R"( { "utterance" : 7 , "type" : "stop" } )");
    ASSERT_TRUE(stop);
    EXPECT_EQ(std::get<Stop>(*stop).utterance, 7U);
}

TEST(Protocol, takesATextOfTenMegabytes) {
    const Request request(Speak{1, std::string(10'000'000, 'a'), "v", 1, 1, {}});
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
    "\"stop\"",
    "garbage",
    R"({"type":"stop","utterance":7)",
    R"({"type":"stop","utterance":7}})",
    R"({"type":"stop","utterance":7} {"type":"stop","utterance":7})",
    R"({"type":"stop","utterance":7,})",
    R"({'type':'stop','utterance':7})",
    R"({"type":"explode","utterance":7})",
    R"({"type":7,"utterance":7})",
    R"({"utterance":7})",
    R"([{"type":"stop","utterance":7}])",
    std::string("{\"type\":\"stop\",\"utterance\":7}\0", 30),
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

INSTANTIATE_TEST_SUITE_P(
    Members, MalformedRequest,
    testing::Values(
        R"({"type":"voices","utterance":1})", R"({"type":"stop"})", R"({"type":"stop","utterance":0})",
        R"({"type":"stop","utterance":-1})", R"({"type":"stop","utterance":1.0})",
        R"({"type":"stop","utterance":1.5})", R"({"type":"stop","utterance":"1"})",
        R"({"type":"stop","utterance":null})", R"({"type":"stop","utterance":true})",
        R"({"type":"stop","utterance":18446744073709551616})", R"({"type":"stop","utterance":1,"more":1})",
        R"({"type":"stop","utterance":1,"utterance":1})", R"({"type":"stop","type":"stop","utterance":1})",
        R"({"type":"word","utterance":1,"position":0,"length":1})", R"({"type":"adjust","rate":1})",
        R"({"type":"adjust","utterance":1,"rate":"1"})", R"({"type":"adjust","utterance":1,"rate":1e999})",
        R"({"type":"adjust","utterance":1,"volume":[]})", R"({"type":"adjust","utterance":1,"pitch":1})",
        speakWith(R"("voice":"v","rate":1,"volume":1)"), speakWith(R"("text":"t","rate":1,"volume":1)"),
        speakWith(R"("text":"t","voice":"v","volume":1)"), speakWith(R"("text":"t","voice":"v","rate":1)"),
        speakWith(R"("text":1,"voice":"v","rate":1,"volume":1)"),
        speakWith(R"("text":"t","voice":null,"rate":1,"volume":1)"),
        speakWith(R"("text":"t","voice":"v","rate":true,"volume":1)"),
        speakWith(R"("text":"t","voice":"v","rate":1,"volume":"1")"),
        speakWith("\"text\":\"\xFF\",\"voice\":\"v\",\"rate\":1,\"volume\":1"),
        speakWith("\"text\":\"\xED\xA0\x80\",\"voice\":\"v\",\"rate\":1,\"volume\":1"),
        speakWith(R"("text":"\ud800","voice":"v","rate":1,"volume":1)"),
        speakWith("\"text\":\"a\tb\",\"voice\":\"v\",\"rate\":1,\"volume\":1"),
        speakWith(R"("text":"t","voice":"v","rate":1,"volume":1,"pitch":1)")));

class MalformedOutput : public testing::TestWithParam<std::string> {};

TEST_P(MalformedOutput, isRefused) {
    const std::string start = R"("text":"t","voice":"v","rate":1,"volume":1,"output":)";
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
    return R"({"type":"voices","voices":)" + list + "}";
}

INSTANTIATE_TEST_SUITE_P(
    Members, MalformedEvent,
    testing::Values(
        R"({"type":"voices"})", R"({"type":"stop","utterance":1})", voicesWith("{}"), voicesWith("null"),
        voicesWith("[1]"), voicesWith("[{}]"),
        voicesWith(R"([{"name":"","language":"","gender":"male","age":0}])"),
        voicesWith(R"([{"identifier":"","name":"","language":"","gender":"male","age":0}])"),
        voicesWith(R"([{"identifier":"a","name":1,"language":"","gender":"male","age":0}])"),
        voicesWith(R"([{"identifier":"a","name":"","language":"","gender":"other","age":0}])"),
        voicesWith(R"([{"identifier":"a","name":"","language":"","gender":"male","age":-1}])"),
        voicesWith(R"([{"identifier":"a","name":"","language":"","gender":"male","age":2147483648}])"),
        voicesWith(R"([{"identifier":"a","name":"","language":"","gender":"male","age":0,"x":0}])"),
        R"({"type":"started"})", R"({"type":"started","utterance":0})",
        R"({"type":"started","utterance":1,"error":""})", R"({"type":"started","utterance":1,"error":null})",
        R"({"type":"started","utterance":1,"completed":true})",
        R"({"type":"word","utterance":1,"position":0})", R"({"type":"word","utterance":1,"length":1})",
        R"({"type":"word","position":0,"length":1})",
        R"({"type":"word","utterance":1,"position":-1,"length":1})",
        R"({"type":"word","utterance":1,"position":0,"length":0})",
        R"({"type":"word","utterance":1,"position":0,"length":1.0})",
        R"({"type":"word","utterance":1,"position":18446744073709551615,"length":1})",
        R"({"type":"finished","utterance":1})", R"({"type":"finished","utterance":1,"completed":1})",
        R"({"type":"finished","utterance":1,"completed":false,"error":1})",
        R"({"type":"finished","utterance":1,"completed":true,"error":"why"})"));

} // namespace
