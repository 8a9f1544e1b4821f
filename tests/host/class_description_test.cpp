// What a runtime tells of the classes that plugins registered.

#include "entries.h"
#include "tests/host/widget.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace zqm::host::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

template <typename Member>
std::vector<std::string> declarations(const std::vector<Member>& members) {
    std::vector<std::string> lines;
    for (const Member& member : members) {
        lines.push_back(declaration(member));
    }
    return lines;
}

const TypeDescription kInteger{.name = "Integer"};

class ClassDescriptions : public WidgetTest {
protected:
    ClassDescription widget = runtime.describeClasses().at(0);
    ClassDescription gadget = runtime.describeClasses().at(1);
};

TEST_F(ClassDescriptions, AreOfTheRegisteredClassesInOrder) {
    EXPECT_EQ(runtime.describeClasses().size(), 2U);
    EXPECT_EQ(widget.name, "Widget");
    EXPECT_EQ(widget.super, "");
    EXPECT_EQ(gadget.name, "Gadget");
    EXPECT_EQ(gadget.super, "Widget");
}

TEST_F(ClassDescriptions, HaveTheMethodsInTheOrderOfTheRecord) {
    EXPECT_THAT(
        declarations(widget.methods),
        ElementsAre("Constructor()", "Constructor(title as String)", "Destructor()",
                    "Add(one as Integer, other as Integer = 10) as Integer",
                    "Describe(what as String) as String", "Describe(what as Integer) as String",
                    "Describe(what as Widget) as String", "Replace(byref other as Widget) as Boolean",
                    "Exclaim(byref text as String)", "Increase(byref number as Integer)",
                    "Narrow(one as Int32, two as UInt32, three as Single, four as Boolean = true) as Int32",
                    "Raise(className as String, message as String, number as Integer = 0)",
                    "RaiseTwice() as Integer", "Ping(text as String) as Boolean", "Hidden()"));
    EXPECT_THAT(declarations(widget.sharedMethods),
                ElementsAre("Destroyed() as Integer", "Make(title as String) as Widget"));
}

TEST_F(ClassDescriptions, LeaveInheritedMembersOut) {
    EXPECT_THAT(declarations(gadget.methods), ElementsAre("Describe(what as String) as String"));
    EXPECT_THAT(gadget.properties, IsEmpty());
    EXPECT_THAT(gadget.events, IsEmpty());
    EXPECT_THAT(gadget.constants, IsEmpty());
    EXPECT_THAT(gadget.sharedMethods, IsEmpty());
}

TEST_F(ClassDescriptions, TellEverythingOfAMethod) {
    EXPECT_EQ(widget.methods.at(3),
              (MethodDescription{
                  .name = "Add",
                  .parameters = {{.name = "one", .type = kInteger},
                                 {.name = "other", .type = kInteger, .defaultValue = "10"}},
                  .result = kInteger,
              }));
    EXPECT_EQ(widget.methods.at(9),
              (MethodDescription{.name = "Increase",
                                 .parameters = {{.name = "number", .type = kInteger, .byRef = true}}}));
    EXPECT_EQ(widget.methods.back(), (MethodDescription{.name = "Hidden", .isCallable = false}));
    EXPECT_EQ(widget.sharedMethods.front(),
              (MethodDescription{.name = "Destroyed", .result = kInteger, .isShared = true}));
}

TEST_F(ClassDescriptions, TellWhichPropertiesAreReadAndWritten) {
    EXPECT_EQ(widget.properties.size(), 7U);
    EXPECT_EQ(widget.properties.front(), (PropertyDescription{.name = "Count", .type = kInteger}));
    EXPECT_EQ(widget.properties.at(5),
              (PropertyDescription{.name = "Fixed", .type = kInteger, .isWritable = false}));
    EXPECT_EQ(widget.properties.back(),
              (PropertyDescription{.name = "Sink", .type = kInteger, .isReadable = false}));
    EXPECT_EQ(declaration(widget.properties.at(4)), "Title as String");
}

TEST_F(ClassDescriptions, HaveEventsAndConstants) {
    EXPECT_THAT(declarations(widget.events),
                ElementsAre("pinged(number as Integer, real as Double, single as Single, flag as Boolean, "
                            "small as Int32, text as String, sender as Widget)",
                            "Ending()"));
    EXPECT_THAT(widget.constants, ElementsAre(ConstantDescription{.name = "Answer", .value = "42"},
                                              ConstantDescription{.name = "Motto", .value = "a=b"}));
    EXPECT_EQ(declaration(widget.constants.back()), "Motto = a=b");
}

void nothing(REALobject) {}

TEST(ClassDescriptionsOfOtherRecords, TellArraysAndAssignedParameters) {
    Runtime runtime;
    call<void>("RegisterPluginVersion", std::int32_t{13});
    MethodRecord methods[] = {
        {.function = nothing, .declaration = "Names(from() as Double) as String()"},
        {.function = nothing, .declaration = "Value(key as Variant, Assigns _value as Module.Thing)"}};
    ClassRecord record{.version = 13,
                       .name = "Sample",
                       .superName = "Nobody",
                       .dataSize = 16,
                       .constructor = nothing,
                       .destructor = nothing,
                       .methods = methods,
                       .methodCount = 2};
    runtime.registerClass(record);
    const ClassDescription description = runtime.describeClasses().at(0);
    EXPECT_EQ(description.super, "Nobody");
    EXPECT_EQ(description.methods.at(0),
              (MethodDescription{
                  .name = "Names",
                  .parameters = {{.name = "from", .type = {.name = "Double", .isArray = true}}},
                  .result = TypeDescription{.name = "String", .isArray = true},
              }));
    EXPECT_EQ(description.methods.at(1),
              (MethodDescription{
                  .name = "Value",
                  .parameters = {{.name = "key", .type = {.name = "Variant"}},
                                 {.name = "_value", .type = {.name = "Module.Thing"}, .assigns = true}},
              }));
    EXPECT_THAT(declarations(description.methods),
                ElementsAre("Names(from as Double()) as String()",
                            "Value(key as Variant, assigns _value as Module.Thing)"));
}

TEST(ClassDescriptionsOfOtherRecords, AreNoneWithoutAPlugin) {
    EXPECT_THAT(Runtime().describeClasses(), IsEmpty());
}

TEST(ClassDescriptionsOfOtherRecords, LeaveOutTheHostProgramsOwnClasses) {
    Runtime runtime;
    runtime.defineClass({.name = "Own"});
    EXPECT_THAT(runtime.describeClasses(), IsEmpty());
}

} // namespace
} // namespace zqm::host::test
