// A sibling library that appears in the middle of a program.

#include "tests/endtoend/speaking.h"
#include "tests/support/fresh_process.h"

#include <dlfcn.h>
#include <gmock/gmock.h>

namespace zqm::endtoend {
namespace {

using host::Object;
using host::Runtime;

class Sibling {
public:
    explicit Sibling(Runtime& runtime) {
        runtime.load(ZQM_SIBLING);
        library_ = dlopen(ZQM_SIBLING, RTLD_NOW | RTLD_NOLOAD);
    }
    template <typename Result>
    Result call(const char* name) const {
        return reinterpret_cast<Result (*)()>(dlsym(library_, name))();
    }
    std::int64_t pairs() const { return call<std::int64_t>("siblingPairs"); }
    std::int64_t preparations() const { return call<std::int64_t>("siblingPreparations"); }

private:
    void* library_ = nullptr;
};

TEST(SiblingLibrary, ThatAppearsLaterIsUsedFromThenOn) {
    support::inFreshProcess([] {
        const support::TemporaryFolder folder;
        Runtime runtime;
        runtime.load(ZQM_PLUGIN);
        Speaker early(runtime);
        early.speak("Hello", folder / "a.wav");
        const Sibling sibling(runtime);
        EXPECT_EQ(sibling.preparations(), 0);
        {
            Speaker late(runtime);
            EXPECT_EQ(sibling.preparations(), 1);
            EXPECT_EQ(sibling.pairs(), 1);
            Speaker another(runtime);
            EXPECT_EQ(sibling.preparations(), 1);
            EXPECT_EQ(sibling.pairs(), 2);
            late.speak("Hello", folder / "a.wav");
        }
        EXPECT_EQ(sibling.pairs(), 0);
        early.speak("Hello", folder / "a.wav");
        early.object.reset(); // was never entered
        EXPECT_EQ(sibling.pairs(), 0);
        expectNoReports(runtime);
        EXPECT_EQ(runtime.ledger(), host::Ledger());
    });
}

TEST(SiblingLibrary, TurnsPlatformExceptionsIntoHostExceptions) {
    support::inFreshProcess([] {
        Runtime runtime;
        runtime.load(ZQM_PLUGIN);
        const Sibling sibling(runtime);
        sibling.call<void>("siblingMakeStopRaise"); // before the class below it is used
        Object object = runtime.create(kSynthesizer);
        object.call("Constructor");
        const host::Ledger before = runtime.ledger();
        try {
            object.call("stopSpeaking");
            ADD_FAILURE() << "nothing was raised";
        } catch (const host::HostException& exception) {
            EXPECT_EQ(exception.className(), "NSExceptionZQM");
            EXPECT_EQ(exception.message(), "stop was refused");
        }
        EXPECT_EQ(runtime.ledger(), before);
        EXPECT_NE(object.get("voice").asText(), "");
        expectNoReports(runtime);
    });
}

} // namespace
} // namespace zqm::endtoend
