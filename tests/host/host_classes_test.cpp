#include "tests/host/plain_host.h"

#include <vector>

namespace zqm::host::test {
namespace {

using testing::ElementsAre;

class HostClasses : public PlainHost {
protected:
    struct Data {
        std::int64_t number;
        std::int64_t other;
    };
    std::vector<std::string> steps;
};

TEST_F(HostClasses, HaveInstanceDataThatIsZeroOrInitialised) {
    runtime.defineClass({.name = "Plain", .dataSize = sizeof(Data)});
    runtime.defineClass({.name = "Filled", .dataSize = sizeof(Data), .initialise = [](void* data) {
                             static_cast<Data*>(data)->number = 7;
                         }});
    const Object plain = runtime.adopt(call<REALobject>("PluginNewInstance", "plain"));
    EXPECT_EQ(plain.className(), "Plain");
    EXPECT_EQ(plain.dataAs<Data>().number, 0);
    const Object filled = runtime.create("Filled");
    EXPECT_EQ(filled.dataAs<Data>().number, 7);
    EXPECT_EQ(filled.instanceData(),
              reinterpret_cast<char*>(filled.handle()) + static_cast<std::ptrdiff_t>(kInstanceDataOffset));
    EXPECT_EQ(filled.variantType(), 9);
}

TEST_F(HostClasses, ContinueTheirSuperclasses) {
    runtime.defineClass({.name = "Base",
                         .dataSize = 8,
                         .initialise =
                             [&](void* data) {
                                 steps.emplace_back("base");
                                 static_cast<Data*>(data)->number = 1;
                             },
                         .dispose = [&](void*) { steps.emplace_back("base ends"); }});
    runtime.defineClass({.name = "Derived",
                         .super = "base",
                         .dataSize = 16,
                         .initialise =
                             [&](void* data) {
                                 steps.emplace_back("derived");
                                 static_cast<Data*>(data)->other = static_cast<Data*>(data)->number + 1;
                             },
                         .dispose = [&](void*) { steps.emplace_back("derived ends"); }});
    {
        const Object object = runtime.create("Derived");
        EXPECT_EQ(object.dataAs<Data>().other, 2);
        EXPECT_TRUE(
            call<bool>("RuntimeObjectIsa", object.handle(), call<REALclassRef>("pluginObjectType", "Base")));
    }
    EXPECT_THAT(steps, ElementsAre("base", "derived", "derived ends", "base ends"));
}

TEST_F(HostClasses, HaveAtLeastTheDataOfTheirSuperclass) {
    runtime.defineClass({.name = "Base", .dataSize = sizeof(Data)});
    runtime.defineClass({.name = "Derived", .super = "Base"});
    runtime.create("Derived").dataAs<Data>().other = 5;
}

TEST_F(HostClasses, MayBeSubclassesOfAPluginsClass) {
    call<void>("RegisterPluginVersion", std::int32_t{13});
    static std::vector<std::string>* seen = nullptr;
    seen = &steps;
    const MethodRecord methods[] = {
        {.function = static_cast<std::int64_t (*)(REALobject)>([](REALobject) { return std::int64_t{42}; }),
         .declaration = "Answer as Integer"}};
    ClassRecord record{.version = 13,
                       .name = "Thing",
                       .dataSize = 16,
                       .constructor = [](REALobject) { seen->emplace_back("made"); },
                       .destructor = [](REALobject) { seen->emplace_back("ended"); },
                       .methods = methods,
                       .methodCount = 1};
    runtime.registerClass(record);
    runtime.defineClass({.name = "MyThing", .super = "Thing"});
    {
        Object object = runtime.create("MyThing");
        EXPECT_EQ(object.call("Answer").asInteger(), 42);
        EXPECT_TRUE(object.isA("Thing"));
        EXPECT_FALSE(runtime.create("Thing").isA("MyThing"));
    }
    EXPECT_THAT(steps, ElementsAre("made", "made", "ended", "ended"));
}

TEST_F(HostClasses, MayBeSubclassesOfBuiltInClasses) {
    runtime.defineClass({.name = "MyDictionary", .super = "Dictionary"});
    runtime.defineClass({.name = "MyDate", .super = "Date"});
    Dictionary dictionary(runtime.create("MyDictionary"));
    dictionary.setValue(1, 2);
    EXPECT_EQ(dictionary.call("Value", 1).asInteger(), 2);
    EXPECT_EQ(dictionary.className(), "MyDictionary");
    EXPECT_EQ(runtime.create("MyDate").variantType(), 7);
    runtime.defineClass({.name = "MyException", .super = "RuntimeException"});
    const Object exception = runtime.create("MyException");
    const String message = runtime.string("mine");
    EXPECT_EQ(raisedBy([&] {
                  EXPECT_TRUE(
                      call<bool>("REALSetPropValueString", exception.handle(), "Message", message.handle()));
                  call<void>("RuntimeRaiseException", exception.handle());
              }),
              "MyException");
}

TEST(HostClassesOfARuntime, EndTheirObjectsWithIt) {
    bool ended = false;
    Object left;
    {
        Runtime runtime;
        runtime.defineClass({.name = "Ending", .dispose = [&](void*) { ended = true; }});
        left = runtime.create("Ending");
    }
    EXPECT_TRUE(ended);
}

TEST_F(HostClasses, ThatCannotBeSaySo) {
    EXPECT_THROW(runtime.defineClass({.name = ""}), CallError);
    EXPECT_THROW(runtime.defineClass({.name = "DATE"}), CallError);
    EXPECT_THROW(runtime.defineClass({.name = "Mine", .super = "Nothing"}), CallError);
    EXPECT_THROW(runtime.defineClass({.name = "Mine", .super = "Variant"}), CallError);
    EXPECT_NO_THROW(runtime.defineClass({.name = "Mine"}));
    EXPECT_THROW(runtime.defineClass({.name = "Mine"}), CallError);
    EXPECT_THROW((void)Object().instanceData(), CallError);
}

} // namespace
} // namespace zqm::host::test
