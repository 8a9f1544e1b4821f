// What a plugin may do wrong with handles: each breach is reported, answered neutrally, and harms nothing.

#include "entries.h"

#include "zqmhost/zqmhost.h"

#include <CoreFoundation/CoreFoundation.h>
#include <cstring>
#include <gmock/gmock.h>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace zqm::host::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

ClassRecord thingRecord(const char* name = "Thing") {
    return {.version = 13, .name = name, .dataSize = 16, .constructor = nullptr, .destructor = nullptr};
}

class Misuse : public testing::Test {
protected:
    Misuse() {
        call<void>("RegisterPluginVersion", std::int32_t{13});
        runtime.registerClass(record);
        thing = runtime.create("Thing");
    }

    void expectReport(Report::Kind kind, const char* part) {
        const auto reports = runtime.reports();
        ASSERT_EQ(reports.size(), 1U);
        EXPECT_EQ(nameOf(reports.front().kind), std::string(nameOf(kind)));
        EXPECT_THAT(reports.front().text, HasSubstr(part));
        runtime.clearReports();
        EXPECT_THAT(runtime.reports(), IsEmpty());
    }

    REALobject deadObject() {
        REALobject object = call<REALobject>("PluginNewInstance", "Thing");
        call<void>("REALUnlockObject", object);
        return object;
    }
    REALstring deadString() {
        String string = runtime.string("dead");
        return string.handle();
    }

    Runtime runtime;
    ClassRecord record = thingRecord();
    Object thing;
    String text = runtime.string("text");
};

// Every entry point that takes a string first.
struct StringCall {
    const char* name;
    void (*run)(REALstring);
    bool nullIsLegal;
};
void withData(REALstring string) {
    REALstringData data{};
    EXPECT_EQ(call<bool>("PluginGetStringData", string, encoding::kUtf8, &data), string == nullptr);
    if (string == nullptr) {
        call<void>("PluginDisposeStringData", &data);
    }
}
const StringCall kStringCalls[] = {
    {"PluginGetStringData", withData, true},
    {"REALGetStringCFString",
     [](REALstring string) {
         if (CFStringRef made = call<CFStringRef>("REALGetStringCFString", string, 0U)) {
             EXPECT_EQ(string, nullptr);
             CFRelease(made);
         }
     },
     true},
    {"StringGetCString", [](REALstring string) { call<const char*>("StringGetCString", string); }, true},
    {"REALGetStringEncoding", [](REALstring string) { call<std::uint32_t>("REALGetStringEncoding", string); },
     true},
    {"REALSetStringEncoding", [](REALstring string) { call<void>("REALSetStringEncoding", string, 0U); },
     false},
    {"REALConvertString",
     [](REALstring string) {
         if (REALstring made = call<REALstring>("REALConvertString", string, encoding::kUtf8)) {
             EXPECT_EQ(string, nullptr);
             call<void>("REALUnlockString", made);
         }
     },
     true},
    {"REALLockString", [](REALstring string) { call<void>("REALLockString", string); }, false},
    {"REALUnlockString", [](REALstring string) { call<void>("REALUnlockString", string); }, false},
};

TEST_F(Misuse, NullStringIsReportedWhereItIsNoText) {
    for (const StringCall& one : kStringCalls) {
        one.run(nullptr);
        if (one.nullIsLegal) {
            EXPECT_THAT(runtime.reports(), IsEmpty()) << one.name;
        } else {
            expectReport(Report::Kind::NullHandle, one.name);
        }
    }
}

TEST_F(Misuse, DeadStringIsReported) {
    for (const StringCall& one : kStringCalls) {
        one.run(deadString());
        expectReport(Report::Kind::DeadHandle, one.name);
    }
}

TEST_F(Misuse, ForeignStringIsReported) {
    for (const StringCall& one : kStringCalls) {
        one.run(reinterpret_cast<REALstring>(this));
        expectReport(Report::Kind::ForeignHandle, one.name);
    }
}

TEST_F(Misuse, ObjectInPlaceOfAStringIsReported) {
    for (const StringCall& one : kStringCalls) {
        one.run(reinterpret_cast<REALstring>(thing.handle()));
        expectReport(Report::Kind::WrongKind, one.name);
    }
}

// Every entry point that takes an object first.
struct ObjectCall {
    const char* name;
    void (*run)(REALobject);
    bool nullIsLegal;
};
template <typename Value>
void getProperty(const char* entry, REALobject object) {
    Value value{};
    EXPECT_FALSE(call<bool>(entry, object, "Message", &value));
}
const ObjectCall kObjectCalls[] = {
    {"REALLockObject", [](REALobject object) { call<void>("REALLockObject", object); }, false},
    {"REALUnlockObject", [](REALobject object) { call<void>("REALUnlockObject", object); }, false},
    {"RuntimeObjectIsa",
     [](REALobject object) {
         EXPECT_FALSE(
             call<bool>("RuntimeObjectIsa", object, call<REALclassRef>("pluginObjectType", "Thing")));
     },
     true},
    {"GetEventInstance",
     [](REALobject object) { EXPECT_EQ(call<void*>("GetEventInstance", object, std::uint64_t{1}), nullptr); },
     false},
    {"RuntimeRaiseException", [](REALobject object) { call<void>("RuntimeRaiseException", object); }, false},
    {"REALLoadObjectMethod",
     [](REALobject object) { EXPECT_EQ(call<void*>("REALLoadObjectMethod", object, "f"), nullptr); }, true},
    {"REALGetPropValueString",
     [](REALobject object) { getProperty<REALstring>("REALGetPropValueString", object); }, false},
    {"REALGetPropValueObject",
     [](REALobject object) { getProperty<REALobject>("REALGetPropValueObject", object); }, false},
    {"REALGetPropValueDouble",
     [](REALobject object) { getProperty<double>("REALGetPropValueDouble", object); }, false},
    {"REALGetPropValueSingle",
     [](REALobject object) { getProperty<float>("REALGetPropValueSingle", object); }, false},
    {"REALGetPropValueInt64",
     [](REALobject object) { getProperty<std::int64_t>("REALGetPropValueInt64", object); }, false},
    {"REALGetPropValueInteger",
     [](REALobject object) { getProperty<std::int64_t>("REALGetPropValueInteger", object); }, false},
    {"REALSetPropValueString",
     [](REALobject object) {
         EXPECT_FALSE(call<bool>("REALSetPropValueString", object, "Message", REALstring{nullptr}));
     },
     false},
    {"REALSetPropValueInteger",
     [](REALobject object) {
         EXPECT_FALSE(call<bool>("REALSetPropValueInteger", object, "ErrorNumber", std::int64_t{1}));
     },
     false},
};

TEST_F(Misuse, NullObjectIsReportedUnlessItIsLegal) {
    for (const ObjectCall& one : kObjectCalls) {
        one.run(nullptr);
        if (one.nullIsLegal) {
            EXPECT_THAT(runtime.reports(), IsEmpty()) << one.name;
        } else {
            expectReport(Report::Kind::NullHandle, one.name);
        }
    }
}

TEST_F(Misuse, DeadObjectIsReported) {
    for (const ObjectCall& one : kObjectCalls) {
        one.run(deadObject());
        expectReport(Report::Kind::DeadHandle, one.name);
    }
}

TEST_F(Misuse, ForeignObjectIsReported) {
    for (const ObjectCall& one : kObjectCalls) {
        one.run(reinterpret_cast<REALobject>(this));
        expectReport(Report::Kind::ForeignHandle, one.name);
    }
}

TEST_F(Misuse, StringInPlaceOfAnObjectIsReported) {
    for (const ObjectCall& one : kObjectCalls) {
        one.run(reinterpret_cast<REALobject>(text.handle()));
        expectReport(Report::Kind::WrongKind, one.name);
    }
}

TEST_F(Misuse, UnlockingOnceTooOftenIsReported) {
    REALstring string = text.release();
    call<void>("REALUnlockString", string);
    EXPECT_THAT(runtime.reports(), IsEmpty());
    call<void>("REALUnlockString", string);
    expectReport(Report::Kind::DeadHandle, "REALUnlockString");
    REALobject object = thing.release();
    call<void>("REALUnlockObject", object);
    EXPECT_THAT(runtime.reports(), IsEmpty());
    call<void>("REALUnlockObject", object);
    expectReport(Report::Kind::DeadHandle, "REALUnlockObject");
}

TEST_F(Misuse, LockLeftByADestructorIsReported) {
    ClassRecord clinging = thingRecord("Clinging");
    clinging.destructor = [](REALobject self) { call<void>("REALLockObject", self); };
    runtime.registerClass(clinging);
    runtime.create("Clinging").reset();
    expectReport(Report::Kind::UnbalancedLock, "Clinging: 1 locks taken while it ended");
    EXPECT_EQ(runtime.ledger().objects.handles, 1);
}

TEST_F(Misuse, UnlockTooManyInADestructorIsReported) {
    ClassRecord hasty = thingRecord("Hasty");
    hasty.destructor = [](REALobject self) { call<void>("REALUnlockObject", self); };
    runtime.registerClass(hasty);
    runtime.create("Hasty").reset();
    expectReport(Report::Kind::UnbalancedLock, "Hasty unlocked too often while it ends");
}

TEST_F(Misuse, WritingToTheHostsHeaderIsReported) {
    std::memset(thing.handle(), 0, 8);
    thing.reset();
    expectReport(Report::Kind::DamagedHeader, "Thing");
}

TEST_F(Misuse, InstanceDataStartsZeroedBehindTheHeader) {
    const char* data = reinterpret_cast<const char*>(thing.handle()) + kInstanceDataOffset;
    EXPECT_THAT(std::string(data, 16), testing::Each('\0'));
}

TEST_F(Misuse, WrongArgumentsAreReported) {
    REALstringData data{};
    EXPECT_EQ(call<REALobject>("PluginNewInstance", static_cast<const char*>(nullptr)), nullptr);
    expectReport(Report::Kind::BadArgument, "PluginNewInstance");
    EXPECT_FALSE(call<bool>("PluginGetStringData", text.handle(), encoding::kUtf8,
                            static_cast<REALstringData*>(nullptr)));
    expectReport(Report::Kind::BadArgument, "PluginGetStringData");
    call<void>("PluginDisposeStringData", static_cast<REALstringData*>(nullptr));
    expectReport(Report::Kind::BadArgument, "PluginDisposeStringData");
    call<void>("PluginDisposeStringData", &data);
    expectReport(Report::Kind::NullHandle, "PluginDisposeStringData");
    EXPECT_EQ(call<REALstring>("REALBuildString", "abc", std::int32_t{-1}), nullptr);
    expectReport(Report::Kind::BadArgument, "length -1");
    call<void>("RuntimeRaiseException", thing.handle());
    expectReport(Report::Kind::BadArgument, "Thing is no exception");
    EXPECT_EQ(call<void*>("GetEventInstance", thing.handle(), std::uint64_t{77}), nullptr);
    expectReport(Report::Kind::BadArgument, "no event of that token");
    EXPECT_FALSE(call<bool>("RuntimeObjectIsa", thing.handle(), REALclassRef{nullptr}));
    expectReport(Report::Kind::NullHandle, "class reference");
    EXPECT_FALSE(call<bool>("RuntimeObjectIsa", thing.handle(), reinterpret_cast<REALclassRef>(this)));
    expectReport(Report::Kind::ForeignHandle, "class reference");
    EXPECT_EQ(call<REALobject>("PluginCallFunctionWithExceptionHandler",
                               static_cast<void (*)(void*)>(nullptr), static_cast<void*>(nullptr)),
              nullptr);
    expectReport(Report::Kind::BadArgument, "no function");
    EXPECT_FALSE(call<bool>("REALSetPropValueInteger", thing.handle(), static_cast<const char*>(nullptr),
                            std::int64_t{1}));
    expectReport(Report::Kind::BadArgument, "no property name");
    EXPECT_EQ(Runtime::resolver()(nullptr), nullptr);
    expectReport(Report::Kind::BadArgument, "resolver");
}

TEST_F(Misuse, DeclarationThatDoesNotParseIsReported) {
    EXPECT_EQ(call<void*>("REALLoadGlobalMethod", static_cast<const char*>(nullptr), "LenB(s as"), nullptr);
    expectReport(Report::Kind::BadDeclaration, "REALLoadGlobalMethod");
    EXPECT_EQ(call<void*>("REALLoadObjectMethod", thing.handle(), "f("), nullptr);
    expectReport(Report::Kind::BadDeclaration, "REALLoadObjectMethod");
    EXPECT_EQ(call<void*>("REALLoadGlobalMethod", static_cast<const char*>(nullptr),
                          static_cast<const char*>(nullptr)),
              nullptr);
    expectReport(Report::Kind::BadDeclaration, "a name expected");
}

TEST_F(Misuse, StringDataDisposedOfTwiceIsReported) {
    REALstringData data{};
    ASSERT_TRUE(call<bool>("PluginGetStringData", text.handle(), encoding::kUtf8, &data));
    REALstringData copy = data;
    call<void>("PluginDisposeStringData", &data);
    EXPECT_THAT(runtime.reports(), IsEmpty());
    call<void>("PluginDisposeStringData", &copy);
    expectReport(Report::Kind::DeadHandle, "PluginDisposeStringData");
}

TEST_F(Misuse, CallOnAnotherThreadIsReportedAndNotMade) {
    REALstring string = text.handle();
    const Ledger before = runtime.ledger();
    auto* lock = reinterpret_cast<void (*)(REALstring)>(Runtime::resolver()("REALLockString"));
    std::thread([&] { lock(string); }).join();
    expectReport(Report::Kind::WrongThread, "REALLockString");
    EXPECT_EQ(runtime.ledger(), before);
}

TEST_F(Misuse, ResultThatIsNoHandleIsReportedAndNil) {
    ClassRecord liar = thingRecord("Liar");
    const MethodRecord methods[] = {
        {.function = static_cast<REALstring (*)(REALobject)>(
             [](REALobject self) { return reinterpret_cast<REALstring>(self); }),
         .declaration = "Name as String"},
        {.function = static_cast<REALarray (*)(REALobject)>(
             [](REALobject self) { return reinterpret_cast<REALarray>(self); }),
         .declaration = "Names as String()"},
    };
    liar.methods = methods;
    liar.methodCount = 2;
    runtime.registerClass(liar);
    Object object = runtime.create("Liar");
    EXPECT_TRUE(object.call("Name").isNull());
    expectReport(Report::Kind::WrongKind, "method \"Name\": an object instead of a string");
    EXPECT_TRUE(object.call("Names").isNull());
    expectReport(Report::Kind::WrongKind, "method \"Names\": Liar instead of String()");
}

// A plugin whose class raises its one event from outside of any call of the object, as out of a run loop.
class MisuseOfAnEvent : public Misuse {
protected:
    MisuseOfAnEvent() {
        source.events = events;
        source.eventCount = std::size(events);
        source.destructor = [](REALobject) { ++ended; };
        ended = 0;
        runtime.registerClass(source);
        object = runtime.create("Source");
    }

    void raise(bool withLock) {
        runtime.guarded([&] {
            REALobject self = object.handle();
            auto* handler = reinterpret_cast<void (*)(REALobject, std::int64_t)>(
                call<void*>("GetEventInstance", self, events[0].hostToken));
            ASSERT_NE(handler, nullptr);
            if (withLock) {
                call<void>("REALLockObject", self);
            }
            handler(self, 7);
            if (withLock) {
                call<void>("REALUnlockObject", self);
            }
        });
    }

    EventRecord events[1] = {{.declaration = "came(number as Integer)"}};
    ClassRecord source = thingRecord("Source");
    Object object;
    static inline int ended = 0;
};

TEST_F(MisuseOfAnEvent, WithoutALockIsSeenWhenTheHandlerDropsTheObject) {
    int endedInside = -1;
    object.on("came", [&](const Arguments& arguments) {
        object = Object();
        endedInside = ended;
        EXPECT_THROW((void)arguments.sender().className(), CallError);
        EXPECT_EQ(arguments[0].asInteger(), 7);
    });
    raise(false);
    EXPECT_EQ(endedInside, 1);
    expectReport(Report::Kind::MissingLock, "event \"came\": Source ended while the handler ran");
    EXPECT_EQ(runtime.ledger().objects.handles, 1); // the thing
}

TEST_F(MisuseOfAnEvent, WithoutALockIsSeenInAHandlerThatThrowsAsWell) {
    object.on("came", [&](const Arguments&) {
        object = Object();
        throw std::runtime_error("mine");
    });
    EXPECT_THROW(raise(false), std::runtime_error);
    expectReport(Report::Kind::MissingLock, "event \"came\"");
    EXPECT_EQ(ended, 1);
}

TEST_F(MisuseOfAnEvent, WithoutALockIsSeenInAnInnerHandler) {
    int depth = 0;
    object.on("came", [&](const Arguments&) {
        if (++depth == 1) {
            raise(false);
        } else {
            object = Object();
        }
    });
    raise(false);
    EXPECT_EQ(depth, 2);
    EXPECT_EQ(ended, 1);
    expectReport(Report::Kind::MissingLock, "event \"came\"");
}

TEST_F(MisuseOfAnEvent, WithALockIsNone) {
    int endedInside = -1;
    object.on("came", [&](const Arguments& arguments) {
        object = Object();
        endedInside = ended;
        EXPECT_EQ(arguments.sender().className(), "Source");
    });
    raise(true);
    EXPECT_EQ(endedInside, 0);
    EXPECT_EQ(ended, 1);
    EXPECT_THAT(runtime.reports(), IsEmpty());
}

TEST_F(MisuseOfAnEvent, CopyOfTheSenderKeepsItAlive) {
    Object kept;
    object.on("came", [&](const Arguments& arguments) {
        kept = arguments.sender();
        object = Object();
    });
    raise(false);
    EXPECT_EQ(ended, 0);
    EXPECT_EQ(kept.className(), "Source");
    kept.reset();
    EXPECT_EQ(ended, 1);
    EXPECT_THAT(runtime.reports(), IsEmpty());
}

TEST_F(Misuse, DeadHandlesAreForgottenInTheEnd) {
    REALstring first = deadString();
    for (int round = 0; round < 10000; ++round) {
        runtime.string("x");
    }
    // Its address may be another string's by now, so only a bound on what is kept can be seen.
    call<void>("REALLockString", first);
    EXPECT_LE(runtime.reports().size(), 1U);
    EXPECT_EQ(runtime.ledger().strings.handles, 1);
}

} // namespace
} // namespace zqm::host::test
