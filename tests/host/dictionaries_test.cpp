#include "tests/host/plain_host.h"

#include <vector>

namespace zqm::host::test {
namespace {

constexpr const char* kKey = "Key(index As Integer) As Variant";
constexpr const char* kValue = "Value(key As Variant) As Variant";
constexpr const char* kSetValue = "Value(key As Variant, Assigns _value As Variant)";

class Dictionaries : public PlainHost {
public:
    Object key(const Object& dictionary, std::int64_t index) {
        return runtime.adopt(
            method<REALobject(REALobject, std::int64_t)>(dictionary, kKey)(dictionary.handle(), index));
    }
    Object value(const Object& dictionary, const Object& key) {
        return runtime.adopt(method<REALobject(REALobject, REALobject)>(dictionary, kValue)(
            dictionary.handle(), key.handle()));
    }
    void setValue(const Object& dictionary, const Object& key, const Object& value) {
        method<void(REALobject, REALobject, REALobject)>(dictionary, kSetValue)(dictionary.handle(),
                                                                                key.handle(), value.handle());
    }
    std::int64_t count(const Object& dictionary) {
        std::int64_t result = -1;
        EXPECT_TRUE(call<bool>("REALGetPropValueInteger", dictionary.handle(), "Count", &result));
        return result;
    }
};

TEST_F(Dictionaries, AreFilledAndReadByAPlugin) {
    const Object dictionary = runtime.adopt(call<REALobject>("PluginNewInstance", "Dictionary"));
    EXPECT_EQ(count(dictionary), 0);
    setValue(dictionary, runtime.variant("b"), runtime.variant(1));
    setValue(dictionary, runtime.variant("a"), runtime.variant(2));
    setValue(dictionary, runtime.variant("b"), runtime.variant(3));
    EXPECT_EQ(count(dictionary), 2);
    EXPECT_EQ(Value(key(dictionary, 0)).asText(), "b");
    EXPECT_EQ(Value(key(dictionary, 1)).asText(), "a");
    EXPECT_EQ(Value(value(dictionary, runtime.variant("b"))).asInteger(), 3);
    EXPECT_EQ(Value(value(dictionary, runtime.variant("a"))).asInteger(), 2);
    EXPECT_EQ(dictionary.variantType(), 9);
    std::int64_t unchanged = 5;
    EXPECT_FALSE(call<bool>("REALSetPropValueInteger", dictionary.handle(), "Count", unchanged));
}

TEST_F(Dictionaries, AreMadeWithAnyWritingOfTheDeclarations) {
    const Object dictionary = runtime.dictionary();
    for (const char* declaration : {"key(i as integer) as variant", "Value(k as Variant) as Variant",
                                    "VALUE(a AS VARIANT, ASSIGNS b AS VARIANT)"}) {
        EXPECT_NE(method<void()>(dictionary, declaration), nullptr) << declaration;
    }
    for (const char* declaration :
         {"Key(index As String) As Variant", "Key(index As Integer)", "Value(key As Variant, v As Variant)",
          "Value(key as Variant) as Integer", "Keys() as Variant", "Count as Integer"}) {
        EXPECT_EQ(method<void()>(dictionary, declaration), nullptr) << declaration;
    }
}

TEST_F(Dictionaries, HoldLocksOnKeysAndValues) {
    Dictionary dictionary = runtime.dictionary();
    const Object held = runtime.date(2020);
    setValue(dictionary, held, held);
    EXPECT_EQ(runtime.ledger().objects, (Ledger::Count{2, 4}));
    setValue(dictionary, held, Object());
    EXPECT_EQ(runtime.ledger().objects, (Ledger::Count{2, 3}));
    EXPECT_TRUE(value(dictionary, held).isNull());
    dictionary.removeAll();
    EXPECT_EQ(runtime.ledger().objects, (Ledger::Count{2, 2}));
}

TEST_F(Dictionaries, MissingKeyIsRaised) {
    const Object dictionary = runtime.dictionary();
    const Object missing = runtime.variant("x");
    EXPECT_EQ(raisedBy([&] { EXPECT_TRUE(value(dictionary, missing).isNull()); }), "KeyNotFoundException");
    EXPECT_EQ(raisedBy([&] { EXPECT_TRUE(value(dictionary, Object()).isNull()); }), "KeyNotFoundException");
    EXPECT_EQ(raisedBy([&] { EXPECT_TRUE(key(dictionary, 0).isNull()); }), "OutOfBoundsException");
    EXPECT_EQ(raisedBy([&] { EXPECT_TRUE(key(dictionary, -1).isNull()); }), "OutOfBoundsException");
}

TEST_F(Dictionaries, MissingKeyCanBeCaughtByAPlugin) {
    struct Search {
        Dictionaries* test;
        Object dictionary;
        Object key;
    } search{this, runtime.dictionary(), runtime.variant("x")};
    auto* const look = +[](void* context) {
        auto& it = *static_cast<Search*>(context);
        EXPECT_TRUE(it.test->value(it.dictionary, it.key).isNull());
    };
    const Object caught = runtime.adopt(
        call<REALobject>("PluginCallFunctionWithExceptionHandler", look, static_cast<void*>(&search)));
    EXPECT_EQ(caught.className(), "KeyNotFoundException");
    EXPECT_TRUE(runtime.takeRaised().empty());
    EXPECT_EQ(runtime.ledger().objects, (Ledger::Count{3, 3}));
}

TEST_F(Dictionaries, KeysAreComparedByValue) {
    Dictionary dictionary = runtime.dictionary();
    const Object object = runtime.dictionary();
    const std::vector<std::pair<Value, Value>> same{
        {"text", runtime.string("text", encoding::kMacRoman)},
        {"text", runtime.text("text")},
        {1, 1.0},
        {1, runtime.variant(16, 1)},
        {0.0, -0.0},
        {true, true},
        {0.5, 0.5F},
        {runtime.date(2020, 1, 2), runtime.date(2020, 1, 2)},
        {runtime.date(2020, 1, 2), runtime.variant(7, runtime.date(2020, 1, 2))},
        {object, object},
        {object, runtime.variant(9, object)},
        {Value(), Object()},
        {Value(), runtime.variant(0, {})},
    };
    for (const auto& [one, other] : same) {
        dictionary.removeAll();
        dictionary.setValue(one, 1);
        dictionary.setValue(other, 2);
        EXPECT_EQ(dictionary.count(), 1U);
        EXPECT_EQ(dictionary.value(one).asInteger(), 2);
    }
    const std::vector<std::pair<Value, Value>> different{
        {"text", "Text"},
        {"\xC3\xA4", runtime.string("\xE4", encoding::kIsoLatin1)},
        {"1", 1},
        {1, true},
        {1, 1.5},
        {true, false},
        {Value(), 0},
        {Value(), ""},
        {runtime.date(2020, 1, 2), runtime.date(2020, 1, 3)},
        {object, Object(runtime.dictionary())},
        {object, Object(runtime.array(ElementType::Integer))},
        {(std::int64_t{1} << 53) + 1, 0x1p53},
    };
    for (const auto& [one, other] : different) {
        dictionary.removeAll();
        dictionary.setValue(one, 1);
        dictionary.setValue(other, 2);
        EXPECT_EQ(dictionary.count(), 2U);
        EXPECT_EQ(dictionary.value(one).asInteger(), 1);
    }
}

TEST_F(Dictionaries, MayHoldThemselves) {
    Dictionary dictionary = runtime.dictionary();
    setValue(dictionary, runtime.variant("self"), dictionary);
    EXPECT_EQ(value(dictionary, runtime.variant("self")), dictionary);
    EXPECT_EQ(dictionary.value("self").asObject(), dictionary);
    dictionary.removeAll(); // or nothing would ever end it
}

TEST_F(Dictionaries, LetGoOfEachOtherHoweverDeep) {
    Dictionary outer = runtime.dictionary();
    for (int depth = 0; depth < 100000; ++depth) {
        Dictionary next = runtime.dictionary();
        next.setValue(1, outer);
        outer = next;
    }
    outer = Dictionary();
    EXPECT_EQ(runtime.ledger(), Ledger());
}

TEST_F(Dictionaries, OfManyEntriesAreWalkedThrough) {
    const Dictionary dictionary = runtime.dictionary();
    constexpr std::int64_t kMany = 100000;
    for (std::int64_t number = 0; number < kMany; ++number) {
        setValue(dictionary, runtime.variant("key " + std::to_string(number)), runtime.variant(number));
    }
    ASSERT_EQ(count(dictionary), kMany);
    for (std::int64_t number = 0; number < kMany; ++number) {
        const Object found = key(dictionary, number);
        ASSERT_EQ(Value(value(dictionary, found)).asInteger(), number);
    }
}

TEST_F(Dictionaries, CodeRunsBeforeTheNthCall) {
    Dictionary dictionary = runtime.dictionary();
    dictionary.setValue("a", 1);
    dictionary.setValue("b", 2);
    dictionary.before(DictionaryCall::Key, 2, [&] { dictionary.removeAll(); });
    EXPECT_EQ(Value(key(dictionary, 0)).asText(), "a");
    EXPECT_EQ(raisedBy([&] { EXPECT_TRUE(key(dictionary, 1).isNull()); }), "OutOfBoundsException");
    dictionary.setValue("a", 1);
    dictionary.before(DictionaryCall::Value, 1, [&] { EXPECT_TRUE(dictionary.remove("a")); });
    const Object a = runtime.variant("a");
    EXPECT_EQ(raisedBy([&] { EXPECT_TRUE(value(dictionary, a).isNull()); }), "KeyNotFoundException");
}

TEST_F(Dictionaries, OfTheHostProgramAreReadBackAndChanged) {
    Dictionary dictionary = runtime.dictionary();
    for (const int number : {1, 2, 3}) {
        dictionary.setValue(number, "value " + std::to_string(number));
    }
    EXPECT_TRUE(dictionary.remove(2));
    EXPECT_FALSE(dictionary.remove(2));
    EXPECT_FALSE(dictionary.hasKey(2));
    EXPECT_EQ(dictionary.value(3).asText(), "value 3");
    ASSERT_EQ(dictionary.keys().size(), 2U);
    EXPECT_EQ(dictionary.keys()[1].asInteger(), 3);
    dictionary.setValue(2, "again");
    EXPECT_EQ(dictionary.keys()[2].asInteger(), 2);
    EXPECT_THROW(dictionary.value(4), CallError);
    EXPECT_EQ(Dictionary().count(), 0U);
    EXPECT_THROW(Dictionary(runtime.date(2020)), CallError);
    EXPECT_EQ(dictionary.call("Value", 3).asText(), "value 3");
    dictionary.call("Value", 3, "three");
    EXPECT_EQ(dictionary.get("Count").asInteger(), 3);
    EXPECT_EQ(dictionary.call("Value", 3).asText(), "three");
    EXPECT_THROW(dictionary.call("Value", 5), HostException);
}

TEST_F(Dictionaries, MisuseIsReported) {
    const Object dictionary = runtime.dictionary();
    const Object date = runtime.date(2020);
    auto* const read = method<REALobject(REALobject, REALobject)>(dictionary, kValue);
    EXPECT_EQ(read(date.handle(), date.handle()), nullptr);
    expectReport(Report::Kind::WrongKind, "Dictionary.Value: Date instead of a Dictionary");
    EXPECT_EQ(read(nullptr, date.handle()), nullptr);
    expectReport(Report::Kind::NullHandle, "Dictionary.Value");
    const String string = runtime.string("x");
    setValue(dictionary, Object(), Object());
    EXPECT_EQ(read(dictionary.handle(), reinterpret_cast<REALobject>(string.handle())), nullptr);
    expectReport(Report::Kind::WrongKind, "Dictionary.Value: a string instead of an object");
}

TEST(HostsThatLackMembers, AnswerNullForThem) {
    Runtime runtime(Options{.without = {"dictionary.key", "Dictionary.Count"}});
    const Dictionary dictionary = runtime.dictionary();
    EXPECT_EQ(call<void*>("REALLoadObjectMethod", dictionary.handle(), kKey), nullptr);
    EXPECT_NE(call<void*>("REALLoadObjectMethod", dictionary.handle(), kValue), nullptr);
    std::int64_t count = 0;
    EXPECT_FALSE(call<bool>("REALGetPropValueInteger", dictionary.handle(), "Count", &count));
}

TEST(HostsThatLackMembers, AreToldMembersThatThereAre) {
    EXPECT_THAT([] { Runtime(Options{.without = {"Dictionary.Size"}}); },
                testing::ThrowsMessage<CallError>(testing::HasSubstr("\"dictionary.size\"")));
    EXPECT_NO_THROW(Runtime());
}

} // namespace
} // namespace zqm::host::test
