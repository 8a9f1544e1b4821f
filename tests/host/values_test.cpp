#include "zqmhost/zqmhost.h"

#include <gmock/gmock.h>

namespace zqm::host::test {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

TEST(Values, AnswerWhatTheyHold) {
    EXPECT_TRUE(Value(true).asBool());
    EXPECT_EQ(Value(7).asInteger(), 7);
    EXPECT_EQ(Value(std::size_t{7}).asInteger(), 7);
    EXPECT_EQ(Value(7).asSize(), 7U);
    EXPECT_EQ(Value(0).asSize(), 0U);
    EXPECT_EQ(Value(0.5F).asDouble(), 0.5);
    EXPECT_EQ(Value(7).asDouble(), 7);
    EXPECT_EQ(Value("a").asText(), "a");
    EXPECT_EQ(Value(std::string("a")).asText(), "a");
    EXPECT_EQ(Value(std::string_view("a")).asText(), "a");
}

TEST(Values, ThatAreNilCountAsNoneOfTheirKind) {
    for (const Value& none : {Value(), Value(nullptr), Value(String()), Value(Object())}) {
        EXPECT_TRUE(none.isNull());
    }
    EXPECT_EQ(Value().asText(), "");
    EXPECT_TRUE(Value().asString().isNull());
    EXPECT_TRUE(Value().asObject().isNull());
    EXPECT_FALSE(Value("").isNull());
    EXPECT_FALSE(Value(0).isNull());
    EXPECT_FALSE(Value(false).isNull());
}

TEST(Values, OfAnotherKindThanAskedForSaySo) {
    EXPECT_THAT([] { Value(1).asBool(); },
                ThrowsMessage<CallError>(HasSubstr("Boolean asked for, but the value is Integer")));
    EXPECT_THAT([] { Value(1.5).asInteger(); }, ThrowsMessage<CallError>(HasSubstr("is Double")));
    EXPECT_THAT([] { Value("1").asDouble(); }, ThrowsMessage<CallError>(HasSubstr("is String")));
    EXPECT_THAT([] { Value(1).asText(); }, ThrowsMessage<CallError>(HasSubstr("is Integer")));
    EXPECT_THAT([] { Value(true).asObject(); }, ThrowsMessage<CallError>(HasSubstr("is Boolean")));
    EXPECT_THAT([] { Value(-1).asSize(); }, ThrowsMessage<CallError>(HasSubstr("-1 is no size")));
    EXPECT_THAT([] { Value(1.5).asSize(); }, ThrowsMessage<CallError>(HasSubstr("is Double")));
    EXPECT_THAT([] { Value().asInteger(); }, ThrowsMessage<CallError>(HasSubstr("is nil")));
    EXPECT_THAT([] { Value("a").asString(); }, ThrowsMessage<CallError>(HasSubstr("host string")));
    EXPECT_THAT([] { Value(ByRef{}).asInteger(); }, ThrowsMessage<CallError>(HasSubstr("byref nothing")));
}

} // namespace
} // namespace zqm::host::test
