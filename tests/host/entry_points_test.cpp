#include "entries.h"
#include "entry_point_types.h"
#include "tests/host/widget.h"

#include <gmock/gmock.h>
#include <set>
#include <string>
#include <vector>

namespace zqm::host::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

class Refusals : public testing::Test {
protected:
    Runtime runtime;
    EntryPointControl entries = runtime.entryPoints();
};

TEST_F(Refusals, RefusedNameIsAnsweredWithNull) {
    EXPECT_NE(Runtime::resolver()("REALLockString"), nullptr);
    entries.refuse("REALLockString");
    EXPECT_EQ(Runtime::resolver()("REALLockString"), nullptr);
    EXPECT_NE(Runtime::resolver()("REALUnlockString"), nullptr);
    entries.allow("REALLockString");
    EXPECT_NE(Runtime::resolver()("REALLockString"), nullptr);
}

TEST_F(Refusals, AllNamesAtOnce) {
    entries.refuseAll();
    EXPECT_EQ(Runtime::resolver()("REALLockString"), nullptr);
    EXPECT_EQ(Runtime::resolver()("PluginNewInstance"), nullptr);
    entries.allowAll();
    EXPECT_NE(Runtime::resolver()("REALLockString"), nullptr);
}

TEST_F(Refusals, EachNameOnceAndNoOther) {
    const std::vector<std::string> names = EntryPointControl::names();
    EXPECT_THAT(names, testing::IsSupersetOf({"PluginRegisterClass", "REALLockString", "RuntimeUBound"}));
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
    for (const std::string& name : names) {
        EXPECT_NE(Runtime::resolver()(name.c_str()), nullptr) << name;
        entries.refuse(name);
        EXPECT_EQ(Runtime::resolver()(name.c_str()), nullptr) << name;
    }
    for (const char* const name : kEntryPointNames) {
        EXPECT_EQ(Runtime::resolver()(name), nullptr) << name;
    }
}

TEST_F(Refusals, HeldFunctionGoesOnWorking) {
    const String text = runtime.string("x");
    auto* lock = reinterpret_cast<void (*)(REALstring)>(Runtime::resolver()("REALLockString"));
    entries.refuse("REALLockString");
    lock(text.handle());
    EXPECT_EQ(runtime.ledger().strings.locks, 2);
    call<void>("REALUnlockString", text.handle());
}

TEST_F(Refusals, UnknownNameIsAnsweredWithNullAndCounted) {
    EXPECT_EQ(Runtime::resolver()("NoSuchEntryPoint"), nullptr);
    EXPECT_EQ(entries.lookups("NoSuchEntryPoint"), 1U);
    EXPECT_THAT([&] { entries.refuse("NoSuchEntryPoint"); },
                ThrowsMessage<CallError>(HasSubstr("no entry point is called \"NoSuchEntryPoint\"")));
    EXPECT_THROW(entries.allow("NoSuchEntryPoint"), CallError);
    EXPECT_THROW(entries.failCall("NoSuchEntryPoint", 1), CallError);
    EXPECT_THROW(entries.failEveryCall("NoSuchEntryPoint"), CallError);
    EXPECT_THROW(entries.calls("NoSuchEntryPoint"), CallError);
}

TEST_F(Refusals, NthCallFailsAndIsCounted) {
    entries.failCall("REALBuildString", 2);
    std::vector<bool> made;
    for (int time = 0; time < 4; ++time) {
        REALstring string = call<REALstring>("REALBuildString", "abc", std::int32_t{3});
        made.push_back(string != nullptr);
        runtime.adopt(string);
    }
    EXPECT_THAT(made, ElementsAre(true, false, true, true));
    EXPECT_EQ(entries.calls("REALBuildString"), 4U);
    EXPECT_EQ(entries.lookups("REALBuildString"), 4U);
    entries.failCall("REALBuildString", 1);
    EXPECT_EQ(call<REALstring>("REALBuildString", "abc", std::int32_t{3}), nullptr);
}

TEST_F(Refusals, ResettingTheCountsKeepsThePlannedFailures) {
    entries.failCall("REALBuildString", 2);
    runtime.adopt(call<REALstring>("REALBuildString", "abc", std::int32_t{3}));
    entries.resetCounts();
    EXPECT_EQ(entries.calls("REALBuildString"), 0U);
    EXPECT_EQ(entries.lookups("REALBuildString"), 0U);
    EXPECT_EQ(call<REALstring>("REALBuildString", "abc", std::int32_t{3}), nullptr);
}

TEST_F(Refusals, EveryCallFailsUntilTakenBack) {
    entries.failEveryCall("pluginObjectType");
    EXPECT_EQ(call<REALclassRef>("pluginObjectType", "RuntimeException"), nullptr);
    EXPECT_EQ(call<REALclassRef>("pluginObjectType", "RuntimeException"), nullptr);
    entries.failNone();
    EXPECT_NE(call<REALclassRef>("pluginObjectType", "RuntimeException"), nullptr);
}

TEST_F(Refusals, EverythingThatAPluginMayAskForIsOffered) {
    for (const char* name : kEntryPointNames) {
        EXPECT_NE(Runtime::resolver()(name), nullptr) << name;
    }
}

TEST(RefusedFromTheStart, IsWhatTheOptionsSay) {
    Runtime runtime(Options{.refused = {"PluginRegisterClass"}});
    EXPECT_THAT([&] { runtime.load(ZQM_WIDGET_PLUGIN); },
                ThrowsMessage<LoadError>(HasSubstr("registered no class")));
    EXPECT_THAT(runtime.entryPoints().asked(), ElementsAre("REALGetRBVersion", "RegisterPluginVersion",
                                                           "PluginRegisterClass", "PluginRegisterClass"));
}

TEST(RefusedFromTheStart, UnknownNameSaysSo) {
    EXPECT_THROW(Runtime(Options{.refused = {"Nothing"}}), CallError);
    EXPECT_NO_THROW(Runtime());
}

TEST(HostVersion, IsWhatTheOptionsSay) {
    {
        Runtime runtime;
        EXPECT_EQ(call<double>("REALGetRBVersion"), 2023.02);
    }
    {
        Runtime runtime(Options{.version = 2013.04});
        EXPECT_EQ(call<double>("REALGetRBVersion"), 2013.04);
    }
    Runtime runtime(Options{.version = std::nullopt});
    EXPECT_EQ(Runtime::resolver()("REALGetRBVersion"), nullptr);
}

TEST(Runtimes, FollowOneAnotherButDoNotOverlap) {
    EXPECT_EQ(Runtime::resolver()("REALLockString"), nullptr);
    void (*lock)(REALstring) = nullptr;
    {
        Runtime runtime;
        EXPECT_THAT([] { Runtime second; }, ThrowsMessage<CallError>(HasSubstr("another runtime")));
        lock = reinterpret_cast<void (*)(REALstring)>(Runtime::resolver()("REALLockString"));
        ASSERT_NE(lock, nullptr);
    }
    EXPECT_EQ(Runtime::resolver()("REALLockString"), nullptr);
    lock(nullptr); // what a plugin kept still answers neutrally
    Runtime next;
    EXPECT_EQ(next.entryPoints().calls("REALLockString"), 0U);
    EXPECT_THAT(next.reports(), testing::IsEmpty());
}

} // namespace
} // namespace zqm::host::test
