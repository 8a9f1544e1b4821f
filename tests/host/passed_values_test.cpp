// What a plugin's class takes and answers of each kind, as the C++ API passes it.

#include "tests/host/plain_host.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>

namespace zqm::host::test {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

// Answers what it is given, with a lock.
REALobject sameObject(REALobject, REALobject object) {
    if (object != nullptr) {
        call<void>("REALLockObject", object);
    }
    return object;
}
REALtext sameText(REALobject, REALtext text) {
    if (text != nullptr) {
        call<void>("PluginLockText", text);
    }
    return text;
}
void* samePtr(REALobject, void* address) {
    return address;
}

// Puts a new dictionary in its place.
void replaceObject(REALobject, REALobject* object) {
    if (*object != nullptr) {
        call<void>("REALUnlockObject", *object);
    }
    *object = call<REALobject>("PluginNewInstance", "Dictionary");
}
void replaceText(REALobject, REALtext* text) {
    if (*text != nullptr) {
        call<void>("PluginUnlockText", *text);
    }
    *text = nullptr;
}
// Puts an array of so many nil strings in its place.
void replaceStrings(REALobject, REALarray* array) {
    const std::int64_t bound = *array == nullptr ? 0 : call<std::int64_t>("RuntimeUBound", *array) + 1;
    if (*array != nullptr) {
        call<void>("REALUnlockObject", reinterpret_cast<REALobject>(*array));
    }
    *array = call<REALarray>("RuntimeArrayCreateSingleDimBoundedArray", kArrayElementString, bound);
}

REALobject which(const char* name) {
    REALstring string =
        call<REALstring>("REALBuildString", name, static_cast<std::int32_t>(std::strlen(name)));
    REALobject variant = call<REALobject>("StringToVariant", string);
    call<void>("REALUnlockString", string);
    return variant;
}

EventRecord events[] = {{.declaration = "came(value as Variant, list() as Integer, text as Text)"}};

void raise(REALobject self, REALobject value, REALarray list, REALtext text) {
    using Handler = void (*)(REALobject, REALobject, REALarray, REALtext);
    auto* handler = std::bit_cast<Handler>(call<void*>("GetEventInstance", self, events[0].hostToken));
    call<void>("REALLockObject", self);
    handler(self, value, list, text);
    call<void>("REALUnlockObject", self);
}

template <typename Function>
MethodFunction function(Function function) {
    return std::bit_cast<void (*)(REALobject)>(function);
}

const MethodRecord methods[] = {
    {.function = function(sameObject), .declaration = "Variant(value as Variant) as Variant"},
    {.function = function(sameObject), .declaration = "Dictionary(value as Dictionary) as Dictionary"},
    {.function = function(sameObject), .declaration = "Date(value as Date) as Date"},
    {.function = function(sameObject), .declaration = "Block(value as MemoryBlock) as MemoryBlock"},
    {.function = function(sameObject), .declaration = "File(value as FolderItem) as FolderItem"},
    {.function = function(sameObject), .declaration = "WrongDate(value as Variant) as Date"},
    {.function = function(sameObject), .declaration = "WrongStrings(value as Variant) as String()"},
    {.function = function(sameText), .declaration = "Text(value as Text) as Text"},
    {.function = function(samePtr), .declaration = "Ptr(value as Ptr) as Ptr"},
    {.function = function(sameObject), .declaration = "Strings(value() as String) as String()"},
    {.function = function(sameObject), .declaration = "Integers(value as Integer()) as Integer()"},
    {.function = function(sameObject), .declaration = "Singles(value as Single()) as Single()"},
    {.function = function(sameObject), .declaration = "Doubles(value as Double()) as Double()"},
    {.function = function(sameObject), .declaration = "Booleans(value as Boolean()) as Boolean()"},
    {.function = function(sameObject), .declaration = "Texts(value as Text()) as Text()"},
    {.function = function(sameObject), .declaration = "Dates(value as Date()) as Date()"},
    {.function = function(sameObject), .declaration = "Objects(value as Dictionary()) as Dictionary()"},
    {.function = function(sameObject), .declaration = "Variants(value as Variant()) as Variant()"},
    {.function = function(replaceObject), .declaration = "ReplaceVariant(byref value as Variant)"},
    {.function = function(replaceObject), .declaration = "ReplaceDictionary(byref value as Dictionary)"},
    {.function = function(replaceText), .declaration = "ReplaceText(byref value as Text)"},
    {.function = function(replaceStrings), .declaration = "ReplaceStrings(byref value() as String)"},
    {.function = function(+[](REALobject, REALobject) { return which("variant"); }),
     .declaration = "Which(value as Variant) as Variant"},
    {.function = function(+[](REALobject, std::int64_t) { return which("integer"); }),
     .declaration = "Which(value as Integer) as Variant"},
    {.function = function(+[](REALobject, REALarray) { return which("strings"); }),
     .declaration = "Which(value() as String) as Variant"},
    {.function = function(+[](REALobject, REALobject) { return which("date"); }),
     .declaration = "Which(value as Date) as Variant"},
    {.function = function(raise), .declaration = "Raise(value as Variant, list() as Integer, text as Text)"},
};

class PassedValues : public PlainHost {
protected:
    PassedValues() {
        call<void>("RegisterPluginVersion", std::int32_t{13});
        runtime.registerClass(record);
        mirror = runtime.create("Mirror");
    }
    void TearDown() override {
        mirror = Object();
        PlainHost::TearDown();
    }

    Value passed(const char* method, const Value& value) { return mirror.call(method, value); }

    ClassRecord record{.version = 13,
                       .name = "Mirror",
                       .dataSize = 16,
                       .constructor = nullptr,
                       .destructor = nullptr,
                       .methods = methods,
                       .methodCount = std::size(methods),
                       .events = events,
                       .eventCount = std::size(events)};
    Object mirror;
};

TEST_F(PassedValues, AreBoxedWhereAVariantIsDeclared) {
    EXPECT_EQ(passed("Variant", 5).asObject().variantType(), 2);
    EXPECT_EQ(passed("Variant", 5).asInteger(), 5);
    EXPECT_EQ(passed("Variant", 0.5).asDouble(), 0.5);
    EXPECT_TRUE(passed("Variant", true).asBool());
    EXPECT_EQ(passed("Variant", "text").asText(), "text");
    EXPECT_EQ(passed("Variant", runtime.string("s")).asObject().variantType(), 8);
    EXPECT_EQ(passed("Variant", runtime.text("t")).asObject().variantType(), 37);
    EXPECT_TRUE(passed("Variant", nullptr).isNull());
    const Object date = runtime.date(2020);
    EXPECT_EQ(passed("Variant", date).asObject(), date);
    const Array array = runtime.array(ElementType::Integer, {1});
    EXPECT_EQ(passed("Variant", array).asObject(), array);
    const Object variant = runtime.variant(3, 7);
    EXPECT_EQ(passed("Variant", variant).asObject(), variant);
}

TEST_F(PassedValues, OfBuiltInClassesAreObjects) {
    const Dictionary dictionary = runtime.dictionary();
    EXPECT_EQ(passed("Dictionary", dictionary).asObject(), dictionary);
    EXPECT_TRUE(passed("Dictionary", nullptr).isNull());
    const Object date = runtime.date(2020);
    EXPECT_EQ(passed("Date", date).asObject(), date);
    const MemoryBlock block = runtime.memoryBlock("abc");
    EXPECT_EQ(MemoryBlock(passed("Block", block).asObject()).bytes(), "abc");
    EXPECT_EQ(FolderItem(passed("File", runtime.folderItem("/x")).asObject()).path(), "/x");
    EXPECT_THAT([&] { passed("Date", dictionary); },
                ThrowsMessage<CallError>(HasSubstr("Date(Dictionary) fits no declaration")));
    EXPECT_THROW(passed("Dictionary", 5), CallError);
}

TEST_F(PassedValues, OfTextAndPtr) {
    EXPECT_EQ(passed("Text", "utf").asHostText().text(), "utf");
    const Text text = runtime.text("t");
    EXPECT_EQ(passed("Text", text).asHostText().handle(), text.handle());
    EXPECT_TRUE(passed("Text", nullptr).isNull());
    EXPECT_THROW(passed("Text", runtime.string("s")), CallError);
    EXPECT_EQ(passed("Ptr", 0x1234).asInteger(), 0x1234);
    EXPECT_EQ(passed("Ptr", nullptr).asInteger(), 0);
}

TEST_F(PassedValues, AreArraysOfTheDeclaredElements) {
    const std::pair<const char*, std::vector<ElementType>> fitting[] = {
        {"Strings", {ElementType::String}},   {"Integers", {ElementType::Integer, ElementType::Int64}},
        {"Singles", {ElementType::Single}},   {"Doubles", {ElementType::Double}},
        {"Booleans", {ElementType::Boolean}}, {"Texts", {ElementType::Text}},
        {"Dates", {ElementType::Date}},       {"Objects", {ElementType::Object}},
        {"Variants", {ElementType::Object}},
    };
    for (const auto& [method, types] : fitting) {
        EXPECT_TRUE(passed(method, nullptr).isNull());
        for (const auto type : {ElementType::Integer, ElementType::Int64, ElementType::Single,
                                ElementType::Double, ElementType::Date, ElementType::String,
                                ElementType::Object, ElementType::Boolean, ElementType::Text}) {
            const Array array = runtime.array(type);
            if (std::ranges::find(types, type) != types.end()) {
                EXPECT_EQ(passed(method, array).asObject(), array) << method;
            } else {
                EXPECT_THROW(passed(method, array), CallError) << method;
            }
        }
        EXPECT_THROW(passed(method, runtime.dictionary()), CallError) << method;
    }
}

TEST_F(PassedValues, AreReplacedByReference) {
    Value variant = 5;
    mirror.call("ReplaceVariant", ByRef{&variant});
    EXPECT_EQ(variant.asObject().className(), "Dictionary");
    Value dictionary = Dictionary();
    mirror.call("ReplaceDictionary", ByRef{&dictionary});
    EXPECT_FALSE(dictionary.isNull());
    mirror.call("ReplaceDictionary", ByRef{&dictionary});
    Value text = "x";
    mirror.call("ReplaceText", ByRef{&text});
    EXPECT_TRUE(text.isNull());
    Value strings = runtime.array(ElementType::String, {"a", "b"});
    mirror.call("ReplaceStrings", ByRef{&strings});
    EXPECT_EQ(Array(strings.asObject()).size(), 3U);
    strings = Value();
    mirror.call("ReplaceStrings", ByRef{&strings});
    EXPECT_EQ(Array(strings.asObject()).size(), 1U);
}

TEST_F(PassedValues, ChooseTheNearestOverload) {
    EXPECT_EQ(passed("Which", 5).asText(), "integer");
    EXPECT_EQ(passed("Which", "text").asText(), "variant");
    EXPECT_EQ(passed("Which", runtime.array(ElementType::String)).asText(), "strings");
    EXPECT_EQ(passed("Which", runtime.array(ElementType::Integer)).asText(), "variant");
    EXPECT_EQ(passed("Which", runtime.dictionary()).asText(), "variant");
    EXPECT_EQ(passed("Which", runtime.date(2020)).asText(), "date");
}

TEST_F(PassedValues, OfAnotherKindThanDeclaredAreReportedAndNil) {
    const Dictionary dictionary = runtime.dictionary();
    EXPECT_TRUE(passed("WrongDate", dictionary).isNull());
    expectReport(Report::Kind::WrongKind, "method \"WrongDate\": Dictionary instead of Date");
    call<void>("REALUnlockObject", dictionary.handle()); // what the result would have carried
    const Array integers = runtime.array(ElementType::Integer);
    EXPECT_TRUE(passed("WrongStrings", integers).isNull());
    expectReport(Report::Kind::WrongKind, "method \"WrongStrings\": Array instead of String()");
    call<void>("REALUnlockObject", integers.handle());
}

TEST_F(PassedValues, ComeWithEvents) {
    int times = 0;
    mirror.on("came", [&](const Arguments& arguments) {
        if (++times == 1) {
            EXPECT_EQ(arguments[0].asInteger(), 5);
            EXPECT_EQ(Array(arguments[1].asObject()).at(1).asInteger(), 8);
            EXPECT_EQ(arguments[2].asText(), "t");
        } else {
            EXPECT_TRUE(arguments[0].isNull() && arguments[1].isNull() && arguments[2].isNull());
        }
    });
    mirror.call("Raise", 5, runtime.array(ElementType::Integer, {7, 8}), "t");
    mirror.call("Raise", nullptr, nullptr, nullptr);
    EXPECT_EQ(times, 2);
}

} // namespace
} // namespace zqm::host::test
