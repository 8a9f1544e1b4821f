#include "tests/host/widget.h"

#include <gmock/gmock.h>

namespace zqm::host::test {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

class Calls : public WidgetTest {
protected:
    Object widget = runtime.create("Widget");
};

TEST_F(Calls, CreateRunsTheClassConstructorAlone) {
    EXPECT_EQ(widget.className(), "Widget");
    EXPECT_EQ(widget.get("Factor").asDouble(), 1.5);
    EXPECT_EQ(widget.get("Count").asInteger(), 0);
    widget.call("Constructor");
    EXPECT_EQ(widget.get("Count").asInteger(), 1);
}

TEST_F(Calls, NamesKnowNoCase) {
    EXPECT_EQ(runtime.create("wIDGET").className(), "Widget");
    EXPECT_EQ(widget.call("aDD", 1, 2).asInteger(), 3);
    widget.set("COUNT", 5);
    EXPECT_EQ(widget.get("count").asInteger(), 5);
}

TEST_F(Calls, PropertiesOfEveryKindAreWrittenAndRead) {
    widget.set("Count", -9000000000);
    widget.set("Scale", 0.1);
    widget.set("Enabled", true);
    widget.set("Factor", 0.1);
    widget.set("Title", "Größe");
    EXPECT_EQ(widget.get("Count").asInteger(), -9000000000);
    EXPECT_EQ(widget.get("Scale").asDouble(), 0.1);
    EXPECT_TRUE(widget.get("Enabled").asBool());
    EXPECT_EQ(widget.get("Factor").asDouble(), static_cast<double>(0.1F));
    EXPECT_EQ(widget.get("Title").asText(), "Größe");
    widget.set("Title", nullptr);
    EXPECT_TRUE(widget.get("Title").isNull());
    widget.set("Scale", 3);
    EXPECT_EQ(widget.get("Scale").asDouble(), 3);
}

TEST_F(Calls, GetterIsHandedTheParameterOfItsRecord) {
    EXPECT_EQ(widget.get("Fixed").asInteger(), 42);
}

TEST_F(Calls, PropertyThatCanNotBeReadOrWrittenSaysSo) {
    EXPECT_THAT([&] { widget.set("Fixed", 1); },
                ThrowsMessage<CallError>(HasSubstr("Widget.Fixed is read-only")));
    EXPECT_THAT([&] { widget.get("Sink"); },
                ThrowsMessage<CallError>(HasSubstr("Widget.Sink can't be read")));
    widget.set("Sink", 4);
    EXPECT_EQ(widget.get("Count").asInteger(), 4);
}

TEST_F(Calls, UnknownNamesSaySo) {
    EXPECT_THAT([&] { runtime.create("Nothing"); },
                ThrowsMessage<CallError>(HasSubstr("no class \"Nothing\"")));
    EXPECT_THAT([&] { widget.call("nothing"); },
                ThrowsMessage<CallError>(HasSubstr("no method Widget.nothing")));
    EXPECT_THAT([&] { widget.get("nothing"); },
                ThrowsMessage<CallError>(HasSubstr("no property Widget.nothing")));
    EXPECT_THAT([&] { widget.set("nothing", 1); },
                ThrowsMessage<CallError>(HasSubstr("no property Widget.nothing")));
    EXPECT_THAT([&] { widget.on("nothing", [](const Arguments&) {}); },
                ThrowsMessage<CallError>(HasSubstr("no event Widget.nothing")));
    EXPECT_THAT([&] { widget.timesRaised("nothing"); }, ThrowsMessage<CallError>(HasSubstr("no event")));
    EXPECT_THAT([&] { runtime.callShared("Widget", "nothing"); },
                ThrowsMessage<CallError>(HasSubstr("no method Widget.nothing")));
    EXPECT_THAT([&] { runtime.callShared("Nothing", "nothing"); },
                ThrowsMessage<CallError>(HasSubstr("no class")));
    EXPECT_THAT([&] { runtime.constant("Widget", "nothing"); },
                ThrowsMessage<CallError>(HasSubstr("no constant")));
}

TEST_F(Calls, ArgumentsOfTheWrongKindOrNumberSaySo) {
    EXPECT_THAT([&] { widget.call("Add"); },
                ThrowsMessage<CallError>(HasSubstr("Widget.Add() fits no declaration")));
    EXPECT_THAT([&] { widget.call("Add", 1, 2, 3); },
                ThrowsMessage<CallError>(HasSubstr("fits no declaration")));
    EXPECT_THAT(
        [&] { widget.call("Add", 1.5, 2); },
        ThrowsMessage<CallError>(HasSubstr("Add(Double, Integer) fits no declaration: Add(one as Integer")));
    EXPECT_THAT([&] { widget.call("Add", "1", 2); },
                ThrowsMessage<CallError>(HasSubstr("Add(String, Integer)")));
    EXPECT_THAT([&] { widget.call("Add", true, 2); },
                ThrowsMessage<CallError>(HasSubstr("Add(Boolean, Integer)")));
    EXPECT_THAT([&] { widget.call("Add", nullptr, 2); },
                ThrowsMessage<CallError>(HasSubstr("Add(nil, Integer)")));
    EXPECT_THAT([&] { widget.set("Enabled", 1); }, ThrowsMessage<CallError>(HasSubstr("Integer given for")));
    EXPECT_THAT([&] { widget.set("Title", widget); },
                ThrowsMessage<CallError>(HasSubstr("Widget given for")));
    EXPECT_THAT([&] { widget.call("Describe", runtime.create("RuntimeException")); },
                ThrowsMessage<CallError>(HasSubstr("Describe(RuntimeException)")));
}

TEST_F(Calls, DefaultValuesFillWhatIsLeftOut) {
    EXPECT_EQ(widget.call("Add", 5).asInteger(), 15);
    EXPECT_EQ(widget.call("Narrow", -5, 7, 3.9).asInteger(), 1005);
    EXPECT_EQ(widget.call("Narrow", -5, 7, 3.9, false).asInteger(), 5);
}

TEST_F(Calls, NumberOutOfRangeOfItsParameterSaysSo) {
    EXPECT_THAT([&] { widget.call("Narrow", 2147483648, 0, 0); },
                ThrowsMessage<CallError>(HasSubstr("2147483648 is out of the range")));
    EXPECT_THAT([&] { widget.call("Narrow", 0, -1, 0); },
                ThrowsMessage<CallError>(HasSubstr("-1 is out of the range")));
    EXPECT_EQ(widget.call("Narrow", -2147483648, 2147483647, 0, false).asInteger(), -1);
}

TEST_F(Calls, OverloadsAreToldApartByTheirArguments) {
    EXPECT_EQ(widget.call("Describe", "x").asText(), "string x");
    EXPECT_EQ(widget.call("Describe", runtime.string("y")).asText(), "string y");
    EXPECT_EQ(widget.call("Describe", 3).asText(), "integer 3");
    EXPECT_EQ(widget.call("Describe", widget).asText(), "widget");
    EXPECT_EQ(widget.call("Describe", String()).asText(), "string ");
    EXPECT_EQ(widget.call("Describe", Object()).asText(), "nil");
    EXPECT_THAT([&] { widget.call("Describe", nullptr); },
                ThrowsMessage<CallError>(HasSubstr("more than one")));
}

TEST_F(Calls, AMethodIsCalledAsItIsDescribed) {
    const auto describe = [](const char* type) {
        return MethodDescription{.name = "describe", .parameters = {{.name = "it", .type = {.name = type}}}};
    };
    EXPECT_EQ(widget.callDescribed(describe("String"), {nullptr}).asText(), "string ");
    EXPECT_EQ(widget.callDescribed(describe("widget"), {nullptr}).asText(), "nil");
    EXPECT_EQ(widget.callDescribed(describe("Integer"), {3}).asText(), "integer 3");
    EXPECT_EQ(runtime.create("Gadget").callDescribed(describe("String"), {"x"}).asText(), "gadget x");
    EXPECT_THAT([&] { widget.callDescribed(describe("Double"), {3}); },
                ThrowsMessage<CallError>(HasSubstr("declared as describe(it as Double)")));
    EXPECT_THAT([&] { widget.callDescribed(describe("Integer"), {"3"}); },
                ThrowsMessage<CallError>(HasSubstr("describe(String) doesn't fit describe(it as Integer)")));
    EXPECT_THAT([&] { widget.callDescribed(describe("Integer"), {}); },
                ThrowsMessage<CallError>(HasSubstr("doesn't fit")));
    EXPECT_THAT([&] { widget.callDescribed({.name = "Hidden"}, {}); },
                ThrowsMessage<CallError>(HasSubstr("can't be called by host code")));
    EXPECT_THAT([&] { Object().callDescribed(describe("String"), {nullptr}); },
                ThrowsMessage<CallError>(HasSubstr("nil")));
}

TEST_F(Calls, ReferencesAreReadAndReplaced) {
    Value other = runtime.create("Widget");
    EXPECT_TRUE(widget.call("Replace", ByRef{&other}).asBool());
    EXPECT_EQ(other.asObject(), widget);
    Value nothing;
    EXPECT_FALSE(widget.call("Replace", ByRef{&nothing}).asBool());
    EXPECT_EQ(nothing.asObject(), widget);
    EXPECT_FALSE(widget.call("Replace", ByRef{}).asBool());
    Value text = "loud";
    widget.call("Exclaim", ByRef{&text});
    EXPECT_EQ(text.asText(), "loud!");
    Value number = 41;
    widget.call("Increase", ByRef{&number});
    EXPECT_EQ(number.asInteger(), 42);
    EXPECT_THAT([&] { widget.call("Increase", 1); },
                ThrowsMessage<CallError>(HasSubstr("fits no declaration")));
    EXPECT_THAT([&] { widget.call("Add", ByRef{&number}, 1); },
                ThrowsMessage<CallError>(HasSubstr("Add(byref Integer, Integer)")));
}

TEST_F(Calls, MethodNotMeantForHostCodeSaysSo) {
    EXPECT_THAT([&] { widget.call("Hidden"); },
                ThrowsMessage<CallError>(HasSubstr("can't be called by host code")));
}

TEST_F(Calls, SharedMethodsNeedNoObject) {
    const Object made = runtime.callShared("Widget", "Make", "fresh").asObject();
    EXPECT_EQ(made.get("Title").asText(), "fresh");
    const MethodDescription make = runtime.describeClasses().at(0).sharedMethods.at(1);
    const Object other = runtime.callSharedDescribed("Widget", make, {"fresher"}).asObject();
    EXPECT_EQ(other.get("Title").asText(), "fresher");
}

TEST_F(Calls, ConstantsAreText) {
    EXPECT_EQ(runtime.constant("Widget", "answer"), "42");
    EXPECT_EQ(runtime.constant("Widget", "Motto"), "a=b");
}

TEST_F(Calls, SubclassInheritsAndOverrides) {
    Object gadget = runtime.create("Gadget");
    EXPECT_TRUE(gadget.isA("Widget"));
    EXPECT_TRUE(gadget.isA("Gadget"));
    EXPECT_FALSE(widget.isA("Gadget"));
    EXPECT_FALSE(widget.isA("Nothing"));
    EXPECT_EQ(gadget.get("Factor").asDouble(), 1.5);
    EXPECT_EQ(gadget.call("Add", 1, 1).asInteger(), 2);
    EXPECT_EQ(gadget.call("Describe", "x").asText(), "gadget x");
    EXPECT_EQ(gadget.call("Describe", 1).asText(), "integer 1");
    EXPECT_EQ(widget.call("Describe", gadget).asText(), "widget");
    const auto destroyed = runtime.callShared("Widget", "Destroyed").asInteger();
    gadget.reset();
    EXPECT_EQ(runtime.callShared("Widget", "Destroyed").asInteger(), destroyed + 1);
}

TEST_F(Calls, NilObjectSaysSo) {
    Object nothing;
    EXPECT_TRUE(nothing.isNull());
    EXPECT_THAT([&] { nothing.call("Add", 1, 2); }, ThrowsMessage<CallError>(HasSubstr("nil")));
    EXPECT_THAT([&] { nothing.get("Count"); }, ThrowsMessage<CallError>(HasSubstr("nil")));
    EXPECT_THAT([&] { nothing.set("Count", 1); }, ThrowsMessage<CallError>(HasSubstr("nil")));
    EXPECT_THAT([&] { nothing.className(); }, ThrowsMessage<CallError>(HasSubstr("nil")));
    EXPECT_NO_THROW(nothing.reset());
}

TEST(EndedRuntime, LeavesItsValuesHarmless) {
    Object widget;
    String text;
    {
        Runtime runtime;
        runtime.load(ZQM_WIDGET_PLUGIN);
        widget = runtime.create("Widget");
        text = runtime.string("abc");
    }
    EXPECT_THAT([&] { widget.get("Count"); },
                ThrowsMessage<CallError>(HasSubstr("runtime of this value has ended")));
    EXPECT_THAT([&] { text.bytes(); },
                ThrowsMessage<CallError>(HasSubstr("runtime of this value has ended")));
    const Object copy = widget;
    EXPECT_EQ(copy, widget);
}

TEST(EndedRuntime, EndsWhatIsStillAlive) {
    std::int64_t destroyed = 0;
    int ended = 0;
    Object kept;
    {
        Runtime runtime;
        runtime.load(ZQM_WIDGET_PLUGIN);
        destroyed = runtime.callShared("Widget", "Destroyed").asInteger();
        kept = runtime.create("Widget");
        kept.on("Ending", [&](const Arguments&) { ++ended; });
    }
    EXPECT_EQ(ended, 1);
    Runtime next;
    next.load(ZQM_WIDGET_PLUGIN);
    EXPECT_EQ(next.callShared("Widget", "Destroyed").asInteger(), destroyed + 1);
}

TEST_F(Calls, ConstructRunsTheConstructorThatFits) {
    EXPECT_EQ(runtime.construct("Widget").get("Count").asInteger(), 1);
    EXPECT_EQ(runtime.construct("Widget", "named").get("Title").asText(), "named");
    EXPECT_THROW(runtime.construct("Widget", 1, 2, 3), CallError);
    EXPECT_THROW(runtime.construct("Nothing"), CallError);
    EXPECT_EQ(runtime.ledger().objects.handles, 1); // the test's own
}

} // namespace
} // namespace zqm::host::test
