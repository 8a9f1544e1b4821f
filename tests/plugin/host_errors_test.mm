// What the host program sees of a failure: exception classes, messages, numbers, locks.

#include "plugin/host_errors.h"

#include "plugin/autorelease_pool.h"
#include "plugin/host_handles.h"
#include "tests/plugin/plugin_host.h"
#include "tests/support/fresh_process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

// Set to make the next allocation that may fail do so.
static bool refuseNextAllocation = false;

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return std::exchange(refuseNextAllocation, false) ? nullptr : ::operator new[](size);
}

namespace {

using testing::IsEmpty;
using zqm::host::HostException;
using zqm::host::RaisedException;

std::vector<RaisedException> raisedBy(PluginHost& host, const std::function<void()>& body) {
    try {
        host->guarded(body);
    } catch (const HostException& exception) {
        return exception.all();
    }
    return {};
}

// The one exception that the body raises, with every lock given back.
RaisedException oneRaisedBy(PluginHost& host, const std::function<void()>& body) {
    const auto before = host->ledger();
    RaisedException only;
    {
        auto raised = raisedBy(host, body);
        EXPECT_EQ(raised.size(), 1U);
        if (!raised.empty()) {
            only = raised.front();
        }
        only.object = {};
    }
    EXPECT_EQ(host->ledger(), before);
    EXPECT_THAT(host->reports(), IsEmpty());
    return only;
}

TEST(RaiseException, NamesClassAndMessageAndAlwaysNumber0) {
    PluginHost host;
    for (const char* className : {"OutOfMemoryException", "UnsupportedOperationException",
                                  "IllegalCastException", "OutOfBoundsException", "RuntimeException"}) {
        const auto raised = oneRaisedBy(host, [&] { RaiseException(className, "why", 5, 7); });
        EXPECT_EQ(raised.className, className);
        EXPECT_EQ(raised.message, "why");
        EXPECT_EQ(raised.errorNumber, 0);
    }
}

std::vector<std::pair<std::string, std::int64_t>> integersSet;

TEST(RaiseException, SetsTheNumberTo0WhateverWasGiven) {
    PluginHost host;
    PluginHost::replace(
        "REALSetPropValueInteger", +[](REALobject, const char* name, std::int64_t value) {
            integersSet.emplace_back(name, value);
            return true;
        });
    oneRaisedBy(host, [] { RaiseException("RuntimeException", "m", 5, 7); });
    EXPECT_THAT(integersSet, testing::ElementsAre(testing::Pair("ErrorNumber", 0)));
}

TEST(RaiseException, OfAnUnknownClassIsARuntimeException) {
    PluginHost host;
    const auto raised = oneRaisedBy(host, [] { RaiseException("NoSuchClass", "x", 5, 0); });
    EXPECT_EQ(raised.className, "RuntimeException");
    EXPECT_EQ(raised.message, "x");
    EXPECT_EQ(raised.errorNumber, 0);
}

TEST(RaiseException, WithoutMessageBuildsAndUnlocksNoString) {
    zqm::support::inFreshProcess([] {
        PluginHost host;
        const auto raised = oneRaisedBy(host, [] { RaiseException("RuntimeException", nullptr, 0, 0); });
        EXPECT_EQ(raised.message, "");
        EXPECT_EQ(host->entryPoints().calls("REALBuildString"), 0U);
        EXPECT_EQ(host->entryPoints().calls("REALUnlockString"), 0U);
    });
}

TEST(RaiseException, IsSilentWithoutInstancesAndReleasesTheMessage) {
    zqm::support::inFreshProcess([] {
        PluginHost host;
        PluginHost::refuse("PluginNewInstance");
        const auto before = host->ledger();
        EXPECT_THAT(raisedBy(host, [] { RaiseException("RuntimeException", "lost", 0, 0); }), IsEmpty());
        EXPECT_EQ(host->ledger(), before);
    });
}

// Each step that the host can't do is skipped, and the rest is done all the same.
TEST(RaiseException, SkipsTheStepThatIsMissing) {
    for (const char* missing : {"REALSetPropValueString", "REALSetPropValueInteger", "REALBuildString"}) {
        zqm::support::inFreshProcess([missing] {
            PluginHost host;
            PluginHost::refuse(missing);
            const auto raised = oneRaisedBy(host, [] { RaiseException("OutOfBoundsException", "m", 0, 0); });
            EXPECT_EQ(raised.className, "OutOfBoundsException");
            EXPECT_EQ(raised.message, std::string(missing) == "REALSetPropValueInteger" ? "m" : "");
        });
    }
    zqm::support::inFreshProcess([] {
        PluginHost host;
        PluginHost::refuse("RuntimeRaiseException");
        const auto before = host->ledger();
        EXPECT_THAT(raisedBy(host, [] { RaiseException("RuntimeException", "m", 0, 0); }), IsEmpty());
        EXPECT_EQ(host->ledger(), before);
    });
}

struct Bounds {
    std::int64_t value;
    std::int64_t count;
    const char* parameter;
    const char* method;
    const char* message;
};

class RaiseOutOfBounds : public testing::TestWithParam<Bounds> {};

TEST_P(RaiseOutOfBounds, SaysWhatIsWrong) {
    PluginHost host;
    const Bounds& bounds = GetParam();
    const auto raised = oneRaisedBy(host, [&] {
        RaiseOutOfBoundsException(bounds.value, bounds.count, bounds.parameter, bounds.method);
    });
    EXPECT_EQ(raised.className, "OutOfBoundsException");
    EXPECT_EQ(raised.message, bounds.message);
    EXPECT_EQ(raised.errorNumber, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Messages, RaiseOutOfBounds,
    testing::Values(
        Bounds{7, 5, "index", "availableVoice",
               "Parameter index to method availableVoice is too big. Range is 0 to 4, but value is 7."},
        Bounds{-1, 3, nullptr, nullptr, "Parameter ?  is too small. Range is 0 to 2, but value is -1."},
        Bounds{3, 3, "index", "", "Parameter index  is too big. Range is 0 to 2, but value is 3."},
        Bounds{0, 0, "i", "m", "Parameter i to method m is too big. Range is 0 to -1, but value is 0."},
        Bounds{std::numeric_limits<std::int64_t>::max(), 1, "i", "m",
               "Parameter i to method m is too big. Range is 0 to 0, but value is 9223372036854775807."},
        Bounds{std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max(), "i", "m",
               "Parameter i to method m is too small. Range is 0 to 9223372036854775806, but value is "
               "-9223372036854775808."}));

TEST(RaiseOutOfBoundsException, TakesNamesOfAnyLength) {
    PluginHost host;
    const std::string parameter(5'000, 'p');
    const std::string method(7'000, 'm');
    const auto raised =
        oneRaisedBy(host, [&] { RaiseOutOfBoundsException(1, 1, parameter.c_str(), method.c_str()); });
    EXPECT_EQ(raised.message, "Parameter " + parameter + " to method " + method +
                                  " is too big. Range is 0 to 0, but value is 1.");
}

TEST(RaiseOutOfBoundsException, SaysLessWithoutMemoryForTheWording) {
    PluginHost host;
    const auto raised = oneRaisedBy(host, [] {
        refuseNextAllocation = true;
        RaiseOutOfBoundsException(1, 1, "index", "method");
    });
    EXPECT_FALSE(refuseNextAllocation);
    EXPECT_EQ(raised.className, "OutOfBoundsException");
    EXPECT_EQ(raised.message, "Out of Bounds");
}

TEST(RaiseNSExceptionZQM, OnlyLogsWithoutASibling) {
    PluginHost host;
    const AutoreleasePool pool;
    testing::internal::CaptureStderr();
    const auto raised = raisedBy(host, [] {
        RaiseNSExceptionZQM([NSException exceptionWithName:@"BadName" reason:@"bad reason" userInfo:nil]);
    });
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_THAT(raised, IsEmpty());
    EXPECT_THAT(log, testing::HasSubstr("A BadName: bad reason, Info: "));
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1) << log;
}

} // namespace
