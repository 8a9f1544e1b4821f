// The built plugin on a system that lacks the platform's constants: this program runs with a platform library
// that was linked without them.

#include "tests/endtoend/speaking.h"
#include "tests/speech/documented_constants.h"

#include <CoreFoundation/CoreFoundation.h>
#include <dlfcn.h>

namespace zqm::endtoend {
namespace {

class AbsentConstants : public SpeakingTest, public testing::WithParamInterface<DocumentedConstant> {};

using WithoutConstants = SpeakingTest;

// Else the other tests would show nothing.
TEST_F(WithoutConstants, RunsWithTheLibraryThatHasNoConstants) {
    Dl_info library;
    ASSERT_NE(dladdr(reinterpret_cast<void*>(CFRetain), &library), 0);
    EXPECT_TRUE(std::filesystem::equivalent(library.dli_fname, ZQM_PLATFORM_WITHOUT_CONSTANTS))
        << library.dli_fname;
    EXPECT_EQ(dlopen(ZQM_PLATFORM_WITH_CONSTANTS, RTLD_LAZY | RTLD_NOLOAD), nullptr);
}

TEST_P(AbsentConstants, AreNullStrings) {
    ASSERT_EQ(dlsym(RTLD_DEFAULT, linkName(GetParam()).c_str()), nullptr);
    EXPECT_TRUE(runtime.callShared(GetParam().className, GetParam().method).isNull());
    EXPECT_EQ(runtime.ledger(), host::Ledger());
}

INSTANTIATE_TEST_SUITE_P(Platform, AbsentConstants, testing::ValuesIn(kDocumentedConstants),
                         [](const auto& row) { return std::string(row.param.constant); });

} // namespace
} // namespace zqm::endtoend
