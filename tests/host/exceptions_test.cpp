#include "entries.h"
#include "tests/host/widget.h"

#include <gmock/gmock.h>

namespace zqm::host::test {
namespace {

class Exceptions : public WidgetTest {
protected:
    Object widget = runtime.create("Widget");
};

TEST_F(Exceptions, AreThrownAfterTheCall) {
    try {
        widget.call("Raise", "OutOfBoundsException", "too big – viel", 12);
        FAIL() << "nothing was thrown";
    } catch (const HostException& exception) {
        EXPECT_EQ(exception.className(), "OutOfBoundsException");
        EXPECT_EQ(exception.message(), "too big – viel");
        EXPECT_EQ(exception.errorNumber(), 12);
        EXPECT_STREQ(exception.what(), "OutOfBoundsException: too big – viel");
        EXPECT_TRUE(exception.object().isA("RuntimeException"));
        EXPECT_EQ(exception.object().get("Message").asText(), "too big – viel");
        EXPECT_EQ(exception.all().size(), 1U);
    }
    EXPECT_THAT(runtime.takeRaised(), testing::IsEmpty());
}

TEST_F(Exceptions, OfOneCallAreAllListedAndTheFirstIsThrown) {
    try {
        widget.call("RaiseTwice");
        FAIL() << "nothing was thrown";
    } catch (const HostException& exception) {
        EXPECT_EQ(exception.className(), "OutOfBoundsException");
        ASSERT_EQ(exception.all().size(), 2U);
        EXPECT_EQ(exception.all()[1].className, "RuntimeException");
        EXPECT_EQ(exception.all()[1].message, "from RuntimeException");
        EXPECT_EQ(exception.all()[1].errorNumber, 7);
    }
}

TEST_F(Exceptions, WithoutAMessageHaveAnEmptyOne) {
    try {
        widget.call("Raise", "RuntimeException", String());
        FAIL() << "nothing was thrown";
    } catch (const HostException& exception) {
        EXPECT_EQ(exception.message(), "");
        EXPECT_STREQ(exception.what(), "RuntimeException");
    }
}

TEST_F(Exceptions, OfAClassThatIsUnknownAreNotRaised) {
    EXPECT_NO_THROW(widget.call("Raise", "Nobody", "x"));
}

TEST_F(Exceptions, LeaveNothingBehind) {
    const Ledger before = runtime.ledger();
    EXPECT_THROW(widget.call("RaiseTwice"), HostException);
    EXPECT_EQ(runtime.ledger(), before);
}

TEST_F(Exceptions, OutsideOfACallWaitToBeAskedFor) {
    REALobject exception = call<REALobject>("PluginNewInstance", "IllegalCastException");
    call<void>("RuntimeRaiseException", exception);
    call<void>("REALUnlockObject", exception);
    const auto raised = runtime.takeRaised();
    ASSERT_EQ(raised.size(), 1U);
    EXPECT_EQ(raised.front().className, "IllegalCastException");
    EXPECT_EQ(raised.front().object.className(), "IllegalCastException");
    EXPECT_THAT(runtime.takeRaised(), testing::IsEmpty());
}

TEST_F(Exceptions, OfACallInsideAHandlerGoToTheHandler) {
    std::string caught;
    widget.on("pinged", [&](const Arguments& arguments) {
        try {
            Object sender = arguments.sender();
            sender.call("Raise", "RuntimeException", "inner");
        } catch (const HostException& exception) {
            caught = exception.message();
        }
    });
    EXPECT_NO_THROW(widget.call("Ping", "x"));
    EXPECT_EQ(caught, "inner");
}

TEST_F(Exceptions, ThatAHandlerLetsGoLeaveTheOuterCall) {
    widget.on("pinged", [&](const Arguments& arguments) {
        widget.off("pinged");
        Object sender = arguments.sender();
        sender.call("Raise", "RuntimeException", "inner");
    });
    EXPECT_THROW(widget.call("Ping", "x"), HostException);
}

TEST_F(Exceptions, GuardedFunctionThrowsThem) {
    EXPECT_NO_THROW(runtime.guarded([] {}));
    EXPECT_THROW(runtime.guarded([] {
        REALobject exception = call<REALobject>("PluginNewInstance", "OutOfMemoryException");
        call<void>("RuntimeRaiseException", exception);
        call<void>("REALUnlockObject", exception);
    }),
                 HostException);
}

TEST_F(Exceptions, NativeOneOfAPluginFunctionPassesThrough) {
    EXPECT_THROW(runtime.guarded([] { throw std::out_of_range("native"); }), std::out_of_range);
    EXPECT_EQ(widget.call("Add", 1, 2).asInteger(), 3);
}

TEST_F(Exceptions, HandlerOfAPluginGetsTheFirst) {
    const auto raise = [](void* className) {
        for (int time = 0; time < 2; ++time) {
            REALobject exception = call<REALobject>("PluginNewInstance", static_cast<const char*>(className));
            if (exception != nullptr) {
                call<void>("RuntimeRaiseException", exception);
                call<void>("REALUnlockObject", exception);
            }
        }
    };
    const Ledger before = runtime.ledger();
    char name[] = "KeyNotFoundException";
    REALobject caught = call<REALobject>("PluginCallFunctionWithExceptionHandler",
                                         static_cast<void (*)(void*)>(raise), static_cast<void*>(name));
    ASSERT_NE(caught, nullptr);
    EXPECT_EQ(runtime.adopt(caught).className(), "KeyNotFoundException");
    char nobody[] = "Nobody";
    EXPECT_EQ(call<REALobject>("PluginCallFunctionWithExceptionHandler", static_cast<void (*)(void*)>(raise),
                               static_cast<void*>(nobody)),
              nullptr);
    EXPECT_EQ(runtime.ledger(), before);
    EXPECT_THAT(runtime.takeRaised(), testing::IsEmpty());
}

class BuiltInException : public testing::TestWithParam<const char*> {};

TEST_P(BuiltInException, IsARuntimeException) {
    Runtime runtime;
    Object exception = runtime.create(GetParam());
    EXPECT_TRUE(exception.isA("RuntimeException"));
    EXPECT_TRUE(exception.get("Message").isNull());
    EXPECT_EQ(exception.get("ErrorNumber").asInteger(), 0);
    exception.set("Message", "m");
    EXPECT_EQ(exception.get("message").asText(), "m");
    EXPECT_TRUE(call<bool>("RuntimeObjectIsa", exception.handle(),
                           call<REALclassRef>("pluginObjectType", "runtimeException")));
}

INSTANTIATE_TEST_SUITE_P(All, BuiltInException,
                         testing::Values("RuntimeException", "OutOfBoundsException", "OutOfMemoryException",
                                         "IllegalCastException", "UnsupportedOperationException",
                                         "KeyNotFoundException", "NilObjectException",
                                         "TypeMismatchException"));

TEST(ExceptionProperties, ByTheEntryPoints) {
    Runtime runtime;
    Object exception = runtime.create("RuntimeException");
    const String message = runtime.string("Ärger");
    const Ledger before = runtime.ledger();
    EXPECT_TRUE(call<bool>("REALSetPropValueString", exception.handle(), "message", message.handle()));
    EXPECT_TRUE(call<bool>("REALSetPropValueInteger", exception.handle(), "ErrorNumber", std::int64_t{-5}));
    REALstring text = nullptr;
    ASSERT_TRUE(call<bool>("REALGetPropValueString", exception.handle(), "Message", &text));
    EXPECT_EQ(runtime.adopt(text).text(), "Ärger");
    std::int64_t number = 0;
    EXPECT_TRUE(call<bool>("REALGetPropValueInteger", exception.handle(), "ErrorNumber", &number));
    EXPECT_EQ(number, -5);
    double real = 0;
    EXPECT_FALSE(call<bool>("REALGetPropValueDouble", exception.handle(), "ErrorNumber", &real));
    EXPECT_FALSE(call<bool>("REALGetPropValueInteger", exception.handle(), "Nothing", &number));
    EXPECT_TRUE(call<bool>("REALSetPropValueString", exception.handle(), "Message", REALstring{nullptr}));
    EXPECT_EQ(runtime.ledger(), before);
    EXPECT_THAT(runtime.reports(), testing::IsEmpty());
}

} // namespace
} // namespace zqm::host::test
