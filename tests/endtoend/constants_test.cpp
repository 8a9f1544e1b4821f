// The platform's constants by way of the class that gives them to host programs.

#include "tests/endtoend/speaking.h"
#include "tests/speech/documented_constants.h"

namespace zqm::endtoend {
namespace {

class Constants : public SpeakingTest, public testing::WithParamInterface<DocumentedConstant> {};

TEST_P(Constants, AreThePlatformsStringsWithOneLock) {
    const host::String string = runtime.callShared(GetParam().className, GetParam().method).asString();
    EXPECT_EQ(string.bytes(), GetParam().string);
    EXPECT_EQ(string.encoding(), host::encoding::kUtf8);
    EXPECT_EQ(runtime.ledger(),
              (host::Ledger{.objects = {}, .strings = {1, 1}, .texts = {}, .stringData = {}}));
}

INSTANTIATE_TEST_SUITE_P(Platform, Constants, testing::ValuesIn(kDocumentedConstants),
                         [](const auto& row) { return std::string(row.param.constant); });

} // namespace
} // namespace zqm::endtoend
