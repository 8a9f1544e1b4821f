// The guards, where Objective-C and C++ exceptions meet. Built without optimisation and with full
// optimisation: unwinding is where compilers differ.

#include "plugin/guard.h"
#include "plugin/host_strings.h"
#include "plugin/native_guard.h"
#include "tests/plugin/plugin_host.h"
#include "tests/support/fresh_process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <typeinfo>

namespace {

using testing::IsEmpty;

struct CountsItsEnd {
    explicit CountsItsEnd(int& ends) : ends_(ends) {}
    ~CountsItsEnd() { ++ends_; }
    int& ends_;
};

int liveObjects = 0;

} // namespace

@interface LivesInPool : NSObject
@end

@implementation LivesInPool
- (id)init {
    ++liveObjects;
    return [super init];
}
- (void)dealloc {
    --liveObjects;
    [super dealloc];
}
@end

@interface DerivedException : NSException
@end

@implementation DerivedException
@end

namespace {

void raisePlatformException() {
    [NSException raise:@"Name" format:@"reason"];
}

class Guards : public testing::Test {
protected:
    PluginHost host;
};

TEST_F(Guards, AnswerTheResultOfTheBody) {
    EXPECT_EQ(guarded([] { return 7; }), 7);
    EXPECT_EQ(nativeGuarded([] { return 8; }), 8);
    bool ran = false;
    guarded([&] { ran = true; });
    EXPECT_TRUE(ran);
}

TEST_F(Guards, DrainThePoolOfTheBody) {
    guarded([] {
        [[[LivesInPool alloc] init] autorelease];
        EXPECT_EQ(liveObjects, 1);
    });
    EXPECT_EQ(liveObjects, 0);
    guarded([] {
        [[[LivesInPool alloc] init] autorelease];
        raisePlatformException();
    });
    EXPECT_EQ(liveObjects, 0);
    try {
        guarded([] {
            [[[LivesInPool alloc] init] autorelease];
            throw std::runtime_error("native");
        });
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(liveObjects, 0);
}

TEST_F(Guards, MakeAPlatformExceptionNeutralAndRunDestructors) {
    int ends = 0;
    const int result = guarded([&]() -> int {
        const CountsItsEnd local(ends);
        raisePlatformException();
        return 7;
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(ends, 1);
}

TEST_F(Guards, TakeSubclassesOfThePlatformException) {
    const bool result = guarded([]() -> bool {
        [[DerivedException exceptionWithName:@"Derived" reason:@"r" userInfo:nil] raise];
        return true;
    });
    EXPECT_FALSE(result);
}

TEST_F(Guards, LetNativeExceptionsThroughWithDestructorsRun) {
    int ends = 0;
    try {
        guarded([&]() -> int {
            const CountsItsEnd local(ends);
            throw std::out_of_range("through");
        });
        ADD_FAILURE() << "nothing thrown";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "through");
    }
    EXPECT_EQ(ends, 1);
    EXPECT_THAT(host->takeRaised(), IsEmpty());
}

TEST_F(Guards, WorkAThousandTimesOver) {
    for (int i = 0; i < 1'000; ++i) {
        EXPECT_EQ(guarded([]() -> int {
                      raisePlatformException();
                      return 1;
                  }),
                  0);
    }
}

TEST_F(Guards, WorkInsideEachOther) {
    const int outer = guarded([]() -> int {
        const int inner = guarded([]() -> int {
            raisePlatformException();
            return 1;
        });
        EXPECT_EQ(inner, 0);
        return 2;
    });
    EXPECT_EQ(outer, 2);
}

// ---- native guard

struct Mapping {
    const char* name;
    void (*throwIt)();
    const char* className;
    const char* message; // null: the exception's own description
};

struct OtherStandardException : std::exception {
    const char* what() const noexcept override { return "standard"; }
};

struct Base {
    virtual ~Base() = default;
};
struct Derived : Base {};

void failCast() {
    Base base;
    (void)dynamic_cast<Derived&>(base);
}

const Mapping kMappings[] = {
    {"bad_alloc", [] { throw std::bad_alloc(); }, "OutOfMemoryException", "Failed to allocate memory."},
    {"bad_array_new_length", [] { throw std::bad_array_new_length(); }, "OutOfMemoryException",
     "Failed to allocate memory."},
    {"range_error", [] { throw std::range_error("range"); }, "OutOfBoundsException", "range"},
    {"out_of_range", [] { throw std::out_of_range("out"); }, "OutOfBoundsException", "out"},
    {"overflow_error", [] { throw std::overflow_error("over"); }, "OutOfBoundsException", "over"},
    {"underflow_error", [] { throw std::underflow_error("under"); }, "OutOfBoundsException", "under"},
    {"logic_error", [] { throw std::logic_error("logic"); }, "RuntimeException", "logic"},
    {"invalid_argument", [] { throw std::invalid_argument("argument"); }, "RuntimeException", "argument"},
    {"length_error", [] { throw std::length_error("length"); }, "RuntimeException", "length"},
    {"domain_error", [] { throw std::domain_error("domain"); }, "RuntimeException", "domain"},
    {"runtime_error", [] { throw std::runtime_error("runtime"); }, "RuntimeException", "runtime"},
    {"bad_cast", failCast, "IllegalCastException", "std::bad_cast"},
    {"other_exception", [] { throw OtherStandardException(); }, "RuntimeException", "standard"},
    {"number", [] { throw 42; }, "RuntimeException", "Sorry, but there was an unnamed C++ Exception."},
    {"text", [] { throw "text"; }, "RuntimeException", "Sorry, but there was an unnamed C++ Exception."},
};

class NativeGuard : public testing::TestWithParam<Mapping> {};

TEST_P(NativeGuard, RaisesTheHostExceptionOfTheKind) {
    PluginHost host;
    const auto before = host->ledger();
    int ends = 0;
    try {
        host->guarded([&] {
            const int result = nativeGuarded([&]() -> int {
                const CountsItsEnd local(ends);
                GetParam().throwIt();
                return 1;
            });
            EXPECT_EQ(result, 0);
        });
        ADD_FAILURE() << "nothing raised";
    } catch (const zqm::host::HostException& raised) {
        EXPECT_EQ(raised.all().size(), 1U);
        EXPECT_EQ(raised.className(), GetParam().className);
        EXPECT_EQ(raised.message(), GetParam().message);
        EXPECT_EQ(raised.errorNumber(), 0);
    }
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(host->ledger(), before);
    EXPECT_THAT(host->reports(), IsEmpty());
}

// The same through a string builder, whose host throws.
TEST_P(NativeGuard, StandsAroundTheStringBuilders) {
    zqm::support::inFreshProcess([] {
        PluginHost host;
        static bool hasThrown = false;
        static auto* const build = reinterpret_cast<REALstring (*)(const char*, std::int32_t)>(
            zqm::host::Runtime::resolver()("REALBuildString"));
        PluginHost::replace(
            "REALBuildString", +[](const char* bytes, std::int32_t length) {
                if (!std::exchange(hasThrown, true)) {
                    GetParam().throwIt();
                }
                return build(bytes, length);
            });
        try {
            host->guarded(
                [] { EXPECT_EQ(REALBuildUnicodeString("text", 4, kCFStringEncodingUTF8), nullptr); });
            ADD_FAILURE() << "nothing raised";
        } catch (const zqm::host::HostException& raised) {
            EXPECT_EQ(raised.className(), GetParam().className);
            EXPECT_EQ(raised.message(), GetParam().message);
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Kinds, NativeGuard, testing::ValuesIn(kMappings),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(NativeGuardInTrouble, EndsWhereRaisingFailsInTheSameWay) {
    zqm::support::inFreshProcess([] {
        PluginHost host;
        PluginHost::replace(
            "REALBuildString", +[](const char*, std::int32_t) -> REALstring { throw std::bad_alloc(); });
        try {
            host->guarded(
                [] { EXPECT_EQ(REALBuildUnicodeString("text", 4, kCFStringEncodingUTF8), nullptr); });
            ADD_FAILURE() << "nothing raised";
        } catch (const zqm::host::HostException& raised) {
            EXPECT_EQ(raised.all().size(), 1U);
            EXPECT_EQ(raised.className(), "OutOfMemoryException");
            EXPECT_EQ(raised.message(), "");
        }
    });
}

TEST_F(Guards, PassAPlatformExceptionThroughTheNativeOne) {
    int ends = 0;
    const int result = guarded([&]() -> int {
        nativeGuarded([&]() -> int {
            const CountsItsEnd local(ends);
            raisePlatformException();
            return 1;
        });
        ADD_FAILURE() << "the native guard kept it";
        return 2;
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(ends, 1);
    EXPECT_THAT(host->takeRaised(), IsEmpty());
}

} // namespace
