#include "tests/host/widget.h"

#include <gmock/gmock.h>
#include <stdexcept>

namespace zqm::host::test {
namespace {

class Events : public WidgetTest {
protected:
    Object widget = runtime.create("Widget");
};

TEST_F(Events, WithoutAHandlerAreNotRaised) {
    EXPECT_FALSE(widget.call("Ping", "x").asBool());
    EXPECT_EQ(widget.timesRaised("pinged"), 0U);
}

TEST_F(Events, HandTheirArgumentsOver) {
    std::vector<std::vector<Value>> seen;
    widget.on("PINGED", [&](const Arguments& arguments) {
        EXPECT_EQ(arguments.sender(), widget);
        std::vector<Value> values;
        for (std::size_t index = 0; index < arguments.size(); ++index) {
            values.push_back(arguments[index]);
        }
        seen.push_back(values);
        EXPECT_THROW(arguments[7], std::out_of_range);
    });
    EXPECT_TRUE(widget.call("Ping", "größer").asBool());
    ASSERT_EQ(seen.size(), 2U);
    ASSERT_EQ(seen[0].size(), 7U);
    EXPECT_EQ(seen[0][0].asInteger(), -3);
    EXPECT_EQ(seen[0][1].asDouble(), 2.25);
    EXPECT_EQ(seen[0][2].asDouble(), 0.5);
    EXPECT_FALSE(seen[0][3].asBool());
    EXPECT_EQ(seen[0][4].asInteger(), -7);
    EXPECT_EQ(seen[0][5].asText(), "größer");
    EXPECT_EQ(seen[0][6].asObject(), widget);
    EXPECT_TRUE(seen[1][3].asBool());
    EXPECT_EQ(seen[1][4].asInteger(), 8);
    EXPECT_TRUE(seen[1][5].isNull());
    EXPECT_TRUE(seen[1][6].isNull());
    EXPECT_EQ(widget.timesRaised("pinged"), 2U);
}

TEST_F(Events, BelongToOneObject) {
    Object other = runtime.create("Widget");
    int calls = 0;
    widget.on("pinged", [&](const Arguments&) { ++calls; });
    other.call("Ping", "x");
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(other.timesRaised("pinged"), 0U);
}

TEST_F(Events, GoToTheLatestHandlerOnly) {
    int first = 0;
    int second = 0;
    widget.on("pinged", [&](const Arguments&) { ++first; });
    widget.on("pinged", [&](const Arguments&) { ++second; });
    widget.call("Ping", "x");
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 2);
    widget.off("pinged");
    EXPECT_FALSE(widget.call("Ping", "x").asBool());
    EXPECT_EQ(widget.timesRaised("pinged"), 2U);
}

TEST_F(Events, HandlerMayReplaceItself) {
    int second = 0;
    widget.on("pinged", [&](const Arguments& arguments) {
        Object sender = arguments.sender();
        sender.on("pinged", [&](const Arguments&) { ++second; });
    });
    widget.call("Ping", "x"); // the function was handed out before the first of two calls
    widget.call("Ping", "x");
    EXPECT_EQ(second, 2);
}

TEST_F(Events, HandlerMayDropTheLastReferenceToItsObject) {
    const auto destroyed = runtime.callShared("Widget", "Destroyed").asInteger();
    int calls = 0;
    widget.on("pinged", [&](const Arguments&) {
        ++calls;
        widget = Object();
    });
    widget.call("Ping", "x");
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(runtime.callShared("Widget", "Destroyed").asInteger(), destroyed + 1);
    EXPECT_EQ(runtime.ledger(), Ledger());
}

TEST_F(Events, HandlerMayCallItsObject) {
    std::string title;
    widget.on("pinged", [&](const Arguments& arguments) {
        Object sender = arguments.sender();
        sender.set("Title", "from inside");
        title = sender.get("Title").asText();
    });
    widget.call("Ping", "x");
    EXPECT_EQ(title, "from inside");
}

TEST_F(Events, ExceptionOfAHandlerLeavesTheCallAroundIt) {
    int calls = 0;
    widget.on("pinged", [&](const Arguments&) {
        ++calls;
        throw std::runtime_error("first " + std::to_string(calls));
    });
    try {
        widget.call("Ping", "x");
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "first 1");
    }
    EXPECT_EQ(calls, 2);
    try { // the second handler's is not lost
        widget.call("Add", 1, 2);
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "first 2");
    }
    EXPECT_EQ(widget.call("Add", 1, 2).asInteger(), 3);
}

TEST_F(Events, OfADestructorStillArrive) {
    int ended = 0;
    widget.on("Ending", [&](const Arguments& arguments) {
        ++ended;
        EXPECT_EQ(arguments.sender().className(), "Widget");
    });
    widget.reset();
    EXPECT_EQ(ended, 1);
}

TEST_F(Events, AreAwaitedOnlyAsLongAsSaid) {
    EXPECT_FALSE(runtime.runUntilRaised(widget, "pinged", Seconds(0)).has_value());
    EXPECT_TRUE(widget.call("Ping", "x").asBool()) << "the wait has set a handler";
    EXPECT_FALSE(runtime.runUntilRaised(widget, "pinged", Seconds(0)).has_value())
        << "what came before counts";
}

TEST_F(Events, ThatAreNoneAreNotAwaited) {
    EXPECT_THROW(runtime.runUntilRaised(widget, "ponged", Seconds(1)), CallError);
    EXPECT_THROW(runtime.runUntilRaised(Object(), "pinged", Seconds(1)), CallError);
}

TEST(EventsOfAnOldHost, ComeByTheIndirectTokens) {
    Runtime runtime(Options{.version = 2011.0});
    runtime.load(ZQM_WIDGET_PLUGIN);
    EXPECT_EQ(runtime.announcedRevision(), 9);
    Object widget = runtime.create("Widget");
    int calls = 0;
    widget.on("pinged", [&](const Arguments&) { ++calls; });
    EXPECT_TRUE(widget.call("Ping", "x").asBool());
    EXPECT_EQ(calls, 2);
    EXPECT_THAT(runtime.reports(), testing::IsEmpty());
}

} // namespace
} // namespace zqm::host::test
