#include "array_content.h"
#include "tests/host/plain_host.h"

#include <cstring>
#include <vector>

namespace zqm::host::test {
namespace {

using testing::ElementsAre;

constexpr double kOldVersion = 2015.04;
constexpr double kNewVersion = 2016.0;

// What a plugin gets of an array: the function that the entry point answers for it.
template <typename Element>
auto getFunction(const char* name, const Array& array) {
    return call<Element (*)(REALarray, std::int64_t)>(name, array.array());
}
template <typename Handle>
auto insertFunction(const char* name, const Array& array) {
    return call<void (*)(REALarray, std::int64_t, Handle)>(name, array.array());
}

void* directData(const Array& array) {
    void* word = nullptr;
    std::memcpy(&word, reinterpret_cast<const char*>(array.array()) + kArrayDirectDataOffset, sizeof(word));
    return word;
}

class Arrays : public PlainHost {
protected:
    using PlainHost::PlainHost;

    Array created(std::int32_t elementType, std::int64_t upperBound) {
        return runtime.adopt(
            call<REALarray>("RuntimeArrayCreateSingleDimBoundedArray", elementType, upperBound));
    }
    std::int64_t upperBound(const Array& array) { return call<std::int64_t>("RuntimeUBound", array.array()); }
    std::vector<std::string> texts(const Array& array) {
        std::vector<std::string> result;
        for (const Value& value : array.values()) {
            result.push_back(value.asText());
        }
        return result;
    }
};
class OldArrays : public Arrays {
protected:
    OldArrays() : Arrays(Options{.version = kOldVersion}) {}
};
class NewArrays : public Arrays {
protected:
    NewArrays() : Arrays(Options{.version = kNewVersion}) {}
};

TEST_F(Arrays, AreCreatedOfStringsAndObjectsWithNilElements) {
    for (const auto& [type, code] :
         {std::pair(kArrayElementString, 4104), std::pair(kArrayElementObject, 4105)}) {
        const Array array = created(type, 2);
        EXPECT_EQ(array.variantType(), code);
        EXPECT_EQ(array.size(), 3U);
        EXPECT_TRUE(array.at(2).isNull());
        EXPECT_EQ(upperBound(array), 2);
        EXPECT_EQ(upperBound(created(type, -1)), -1);
    }
}

TEST_F(Arrays, OfAnotherTypeOrBoundAreNotCreated) {
    for (const std::int32_t type : {0, 1, 2, 5, 8, 4104}) {
        EXPECT_TRUE(created(type, 0).isNull());
        expectReport(Report::Kind::BadArgument, "element type " + std::to_string(type));
    }
    EXPECT_TRUE(created(kArrayElementString, -2).isNull());
    expectReport(Report::Kind::BadArgument, "upper bound -2");
    for (const std::int64_t bound : {std::int64_t{1} << 58, std::int64_t{0x7FFFFFFFFFFFFFFE}}) {
        EXPECT_TRUE(created(kArrayElementString, bound).isNull());
        expectReport(Report::Kind::BadArgument, "no room");
    }
}

TEST_F(Arrays, OfEveryTypeAreReadElementByElement) {
    const auto integers = runtime.array(ElementType::Integer, {1, -2});
    EXPECT_EQ(getFunction<std::int64_t>("PluginIntegerArrayGetProc", integers)(integers.array(), 1), -2);
    const auto longs = runtime.array(ElementType::Int64, {1, 1LL << 40});
    EXPECT_EQ(getFunction<std::int64_t>("PluginInt64ArrayGetProc", longs)(longs.array(), 1), 1LL << 40);
    const auto singles = runtime.array(ElementType::Single, {1.5, 0.1F});
    EXPECT_EQ(getFunction<float>("PluginSingleArrayGetProc", singles)(singles.array(), 1), 0.1F);
    const auto doubles = runtime.array(ElementType::Double, {1.5, 0.1});
    EXPECT_EQ(getFunction<double>("PluginDoubleArrayGetProc", doubles)(doubles.array(), 1), 0.1);
    const auto flags = runtime.array(ElementType::Boolean, {false, true, false});
    const auto getFlag = getFunction<bool>("PluginBooleanArrayGetProc", flags);
    EXPECT_FALSE(getFlag(flags.array(), 0));
    EXPECT_TRUE(getFlag(flags.array(), 1));
    EXPECT_FALSE(getFlag(flags.array(), 2));
}

TEST_F(Arrays, HandlesAreReadWithALock) {
    const auto strings = runtime.array(ElementType::String, {"a", String()});
    const auto getString = getFunction<REALstring>("PluginStringArrayGetProc", strings);
    const String read = runtime.adopt(getString(strings.array(), 0));
    EXPECT_EQ(read.text(), "a");
    EXPECT_EQ(runtime.ledger().strings, (Ledger::Count{1, 2}));
    EXPECT_EQ(getString(strings.array(), 1), nullptr);
    const String direct =
        runtime.adopt(call<REALstring>("RuntimeDirectReadStringArray", strings.array(), std::int64_t{0}));
    EXPECT_EQ(direct.handle(), read.handle());
    EXPECT_EQ(runtime.ledger().strings, (Ledger::Count{1, 3}));

    const auto texts = runtime.array(ElementType::Text, {"t", nullptr});
    const auto getText = getFunction<REALtext>("PluginTextArrayGetProc", texts);
    EXPECT_EQ(runtime.adopt(getText(texts.array(), 0)).text(), "t");
    EXPECT_EQ(getText(texts.array(), 1), nullptr);

    const Object date = runtime.date(2020);
    const auto objects = runtime.array(ElementType::Object, {date, 5, nullptr});
    const auto getObject = getFunction<REALobject>("PluginObjectArrayGetProc", objects);
    EXPECT_EQ(runtime.adopt(getObject(objects.array(), 0)), date);
    EXPECT_EQ(runtime.adopt(getObject(objects.array(), 1)).variantValue().asInteger(), 5);
    EXPECT_EQ(getObject(objects.array(), 2), nullptr);

    const auto dates = runtime.array(ElementType::Date, {date, nullptr});
    const auto getDate = getFunction<REALobject>("PluginObjectArrayGetProc", dates);
    EXPECT_EQ(runtime.adopt(getDate(dates.array(), 0)), date);
    EXPECT_EQ(getDate(dates.array(), 1), nullptr);
}

TEST_F(Arrays, ElementsEndWithTheArray) {
    Array array = runtime.array(ElementType::String, {"a", "b"});
    Array objects = runtime.array(ElementType::Object, {runtime.dictionary(), array});
    array = Array();
    EXPECT_EQ(runtime.ledger().strings, (Ledger::Count{2, 2}));
    EXPECT_EQ(runtime.ledger().objects, (Ledger::Count{3, 3}));
    objects = Array();
    EXPECT_EQ(runtime.ledger(), Ledger());
}

TEST_F(Arrays, LockedByAPluginLiveOnAfterTheHostProgramDroppedThem) {
    Array array = runtime.array(ElementType::Integer, {1});
    REALarray handle = array.array();
    call<void>("REALLockObject", reinterpret_cast<REALobject>(handle));
    array = Array();
    EXPECT_EQ(call<std::int64_t>("RuntimeUBound", handle), 0);
    call<void>("REALUnlockObject", reinterpret_cast<REALobject>(handle));
    EXPECT_EQ(call<std::int64_t>("RuntimeUBound", handle), 0);
    expectReport(Report::Kind::DeadHandle, "RuntimeUBound");
}

TEST_F(Arrays, InsertingMovesTheElementsBehind) {
    const Array array = created(kArrayElementString, -1);
    const auto insert = insertFunction<REALstring>("PluginStringArrayInsertProc", array);
    for (const auto& [index, text] :
         {std::pair(0, "b"), std::pair(0, "a"), std::pair(2, "d"), std::pair(2, "c")}) {
        const String string = runtime.string(text);
        insert(array.array(), index, string.handle());
    }
    insert(array.array(), 4, nullptr);
    EXPECT_THAT(texts(array), ElementsAre("a", "b", "c", "d", ""));
    EXPECT_EQ(runtime.ledger().strings, (Ledger::Count{4, 4}));

    const Array objects = created(kArrayElementObject, 0);
    const Object date = runtime.date(2020);
    insertFunction<REALobject>("PluginObjectArrayInsertProc", objects)(objects.array(), 0, date.handle());
    EXPECT_EQ(objects.size(), 2U);
    EXPECT_EQ(objects.at(0).asObject(), date);
    EXPECT_TRUE(objects.at(1).isNull());
    EXPECT_EQ(runtime.ledger().objects, (Ledger::Count{3, 4}));
}

TEST_F(Arrays, ManyInsertionsAtTheEndAreDone) {
    const Array array = created(kArrayElementString, -1);
    const auto insert = insertFunction<REALstring>("PluginStringArrayInsertProc", array);
    const String string = runtime.string("x");
    for (std::int64_t index = 0; index < 100000; ++index) {
        insert(array.array(), index, string.handle());
    }
    EXPECT_EQ(upperBound(array), 99999);
    EXPECT_EQ(runtime.ledger().strings.locks, 100001);
}

TEST_F(Arrays, IndexesOutOfRangeAreReportedAndReadAsNothing) {
    const auto strings = runtime.array(ElementType::String, {"a"});
    const auto integers = runtime.array(ElementType::Integer, {7});
    const auto getString = getFunction<REALstring>("PluginStringArrayGetProc", strings);
    const auto getInteger = getFunction<std::int64_t>("PluginIntegerArrayGetProc", integers);
    const auto insert = insertFunction<REALstring>("PluginStringArrayInsertProc", strings);
    for (const std::int64_t index : {std::int64_t{-1}, std::int64_t{1}, std::int64_t{1} << 62}) {
        const std::string said = "index " + std::to_string(index) + " of 1 elements";
        EXPECT_EQ(getString(strings.array(), index), nullptr);
        expectReport(Report::Kind::BadArgument, "PluginStringArrayGetProc: " + said);
        EXPECT_EQ(getInteger(integers.array(), index), 0);
        expectReport(Report::Kind::BadArgument, "PluginIntegerArrayGetProc: " + said);
        EXPECT_EQ(call<REALstring>("RuntimeDirectReadStringArray", strings.array(), index), nullptr);
        expectReport(Report::Kind::BadArgument, "RuntimeDirectReadStringArray: " + said);
    }
    for (const std::int64_t index : {-1, 2}) {
        insert(strings.array(), index, strings.at(0).asString().handle());
        expectReport(Report::Kind::BadArgument, "PluginStringArrayInsertProc: index");
    }
    EXPECT_EQ(strings.size(), 1U);
}

struct Accessor {
    const char* name;
    std::vector<ElementType> types;
};
const Accessor kAccessors[] = {
    {"PluginStringArrayInsertProc", {ElementType::String}},
    {"PluginObjectArrayInsertProc", {ElementType::Object}},
    {"PluginIntegerArrayGetProc", {ElementType::Integer}},
    {"PluginInt64ArrayGetProc", {ElementType::Int64}},
    {"PluginSingleArrayGetProc", {ElementType::Single}},
    {"PluginDoubleArrayGetProc", {ElementType::Double}},
    {"PluginBooleanArrayGetProc", {ElementType::Boolean}},
    {"PluginStringArrayGetProc", {ElementType::String}},
    {"PluginTextArrayGetProc", {ElementType::Text}},
    {"PluginObjectArrayGetProc", {ElementType::Object, ElementType::Date}},
};
constexpr ElementType kTypes[] = {ElementType::Integer, ElementType::Int64,   ElementType::Single,
                                  ElementType::Double,  ElementType::Date,    ElementType::String,
                                  ElementType::Object,  ElementType::Boolean, ElementType::Text};

TEST_F(Arrays, FunctionsAreAnsweredForTheirTypeOnly) {
    for (const Accessor& accessor : kAccessors) {
        for (const ElementType type : kTypes) {
            const Array array = runtime.array(type);
            const bool fits = std::ranges::find(accessor.types, type) != accessor.types.end();
            EXPECT_EQ(call<void*>(accessor.name, array.array()) != nullptr, fits) << accessor.name;
            if (!fits) {
                expectReport(Report::Kind::WrongKind, std::string(accessor.name) + ": an array of ");
            }
        }
    }
}

TEST_F(Arrays, ThatAreNoneAreReported) {
    std::vector<const char*> names{"RuntimeUBound", "RuntimeDirectReadStringArray"};
    for (const Accessor& accessor : kAccessors) {
        names.push_back(accessor.name);
    }
    const Object dictionary = runtime.dictionary();
    const String string = runtime.string("x");
    for (const char* name : names) {
        const auto with = [&](void* handle) {
            EXPECT_EQ(call<void*>(name, handle, std::int64_t{0}), nullptr) << name;
        };
        with(nullptr);
        expectReport(Report::Kind::NullHandle, name);
        with(this);
        expectReport(Report::Kind::ForeignHandle, name);
        with(deadObject());
        expectReport(Report::Kind::DeadHandle, name);
        with(string.handle());
        expectReport(Report::Kind::WrongKind, name);
        with(dictionary.handle());
        expectReport(Report::Kind::WrongKind, std::string(name) + ": Dictionary instead of an array");
    }
}

TEST_F(Arrays, ThatAreNoneAreReportedByTheFunctionsThemselves) {
    const Array array = runtime.array(ElementType::String, {"a"});
    const auto get = getFunction<REALstring>("PluginStringArrayGetProc", array);
    const auto insert = insertFunction<REALstring>("PluginStringArrayInsertProc", array);
    EXPECT_EQ(get(nullptr, 0), nullptr);
    expectReport(Report::Kind::NullHandle, "get function of String()");
    EXPECT_EQ(get(reinterpret_cast<REALarray>(deadObject()), 0), nullptr);
    expectReport(Report::Kind::DeadHandle, "get function of String()");
    const Array other = runtime.array(ElementType::Integer, {1});
    EXPECT_EQ(get(other.array(), 0), nullptr);
    expectReport(Report::Kind::WrongKind, "an array of Integer");
    insert(other.array(), 0, nullptr);
    expectReport(Report::Kind::WrongKind, "an array of Integer");
    EXPECT_EQ(other.size(), 1U);
    insert(array.array(), 0, reinterpret_cast<REALstring>(other.handle()));
    expectReport(Report::Kind::WrongKind, "PluginStringArrayInsertProc: an object instead of a string");
    EXPECT_EQ(array.size(), 1U);
}

TEST_F(Arrays, DirectReadingIsForStringsOnly) {
    const Array array = runtime.array(ElementType::Integer, {1});
    EXPECT_EQ(call<REALstring>("RuntimeDirectReadStringArray", array.array(), std::int64_t{0}), nullptr);
    expectReport(Report::Kind::WrongKind, "RuntimeDirectReadStringArray: an array of Integer");
}

TEST_F(Arrays, CodeRunsBeforeTheNthCall) {
    Array array = runtime.array(ElementType::Integer, {1, 2, 3});
    const auto get = getFunction<std::int64_t>("PluginIntegerArrayGetProc", array);
    array.before(ArrayCall::UBound, 2, [&] { array.resize(1); });
    EXPECT_EQ(upperBound(array), 2);
    EXPECT_EQ(upperBound(array), 0);
    array.before(ArrayCall::Get, 1, [&] { array.set(0, 9); });
    EXPECT_EQ(get(array.array(), 0), 9);
    array.before(ArrayCall::Get, 1, [&] { array.resize(0); });
    EXPECT_EQ(get(array.array(), 0), 0);
    expectReport(Report::Kind::BadArgument, "index 0 of 0 elements");
    EXPECT_EQ(upperBound(array), -1);
}

TEST_F(Arrays, CodeMayDropTheArrayThatIsRead) {
    Array array = runtime.array(ElementType::String, {"a"});
    const auto get = getFunction<REALstring>("PluginStringArrayGetProc", array);
    array.before(ArrayCall::Get, 1, [&] { array = Array(); });
    EXPECT_EQ(runtime.adopt(get(array.array(), 0)).text(), "a");
    EXPECT_TRUE(array.isNull());
}

TEST_F(Arrays, WhatTheCodeThrowsLeavesTheCallAround) {
    Array array = runtime.array(ElementType::Integer, {1});
    array.before(ArrayCall::UBound, 1, [] { throw std::runtime_error("mine"); });
    EXPECT_THROW(runtime.guarded([&] { EXPECT_EQ(upperBound(array), 0); }), std::runtime_error);
}

TEST_F(Arrays, OfTheHostProgramAreReadBackAndChanged) {
    Array array = runtime.array(ElementType::String, {"a"});
    EXPECT_EQ(array.elementType(), ElementType::String);
    array.append("b");
    array.set(0, runtime.string("z"));
    array.resize(4);
    EXPECT_THAT(texts(array), ElementsAre("z", "b", "", ""));
    array.resize(1);
    EXPECT_EQ(runtime.ledger().strings, (Ledger::Count{1, 1}));
    EXPECT_THROW(array.at(1), CallError);
    EXPECT_THROW(array.set(1, "x"), CallError);
    EXPECT_THROW(array.append(7), CallError);
    EXPECT_EQ(array.size(), 1U);
    EXPECT_THROW(runtime.array(ElementType::Date, {runtime.dictionary()}), CallError);
    EXPECT_THROW(runtime.array(ElementType::Boolean, {1}), CallError);
    EXPECT_EQ(runtime.array(ElementType::Boolean, {true}).at(0).asBool(), true);
    EXPECT_EQ(runtime.array(ElementType::Single, {1}).at(0).asDouble(), 1);
    EXPECT_EQ(Array().size(), 0U);
    EXPECT_THROW(Array().resize(1), CallError);
    EXPECT_THROW(Array(runtime.dictionary()), CallError);
    EXPECT_EQ(Array(Object(array)).array(), array.array());
}

TEST_F(OldArrays, ShowTheirElements) {
    const auto integers = runtime.array(ElementType::Integer, {1, 2});
    EXPECT_EQ(static_cast<const std::int64_t*>(directData(integers))[1], 2);
    const auto singles = runtime.array(ElementType::Single, {1, 2});
    EXPECT_EQ(static_cast<const float*>(directData(singles))[1], 2);
    const auto doubles = runtime.array(ElementType::Double, {1, 2});
    EXPECT_EQ(static_cast<const double*>(directData(doubles))[1], 2);
    const auto flags = runtime.array(ElementType::Boolean, {true, false, true});
    EXPECT_EQ(std::memcmp(directData(flags), "\1\0\1", 3), 0);
    const auto strings = runtime.array(ElementType::String, {"a", nullptr, "b"});
    auto* const* handles = static_cast<REALstring const*>(directData(strings));
    EXPECT_EQ(handles[0], strings.at(0).asString().handle());
    EXPECT_EQ(handles[1], nullptr);
    EXPECT_EQ(runtime.borrow(handles[2]).text(), "b");
}

TEST_F(OldArrays, ShowThemAfterTheyMoved) {
    Array array = runtime.array(ElementType::Integer);
    for (int number = 0; number < 100; ++number) {
        array.append(number);
        ASSERT_EQ(static_cast<const std::int64_t*>(directData(array))[number], number);
    }
    array.resize(1000);
    EXPECT_EQ(static_cast<const std::int64_t*>(directData(array))[99], 99);
    EXPECT_EQ(static_cast<const std::int64_t*>(directData(array))[999], 0);
    const Array made = created(kArrayElementString, 1);
    EXPECT_EQ(static_cast<void* const*>(directData(made))[1], nullptr);
}

TEST_F(OldArrays, AreReadByFunctionsAsWell) {
    const auto array = runtime.array(ElementType::Integer, {1, 2});
    EXPECT_EQ(getFunction<std::int64_t>("PluginIntegerArrayGetProc", array)(array.array(), 1), 2);
}

TEST_F(NewArrays, ShowNothing) {
    for (const ElementType type : kTypes) {
        Array array = runtime.array(type);
        array.resize(3);
        EXPECT_EQ(directData(array), nullptr);
    }
    EXPECT_EQ(directData(created(kArrayElementObject, 5)), nullptr);
}

class ArraysOfAHostWithoutVersion : public Arrays {
protected:
    ArraysOfAHostWithoutVersion() : Arrays(Options{.version = std::nullopt}) {}
};

TEST_F(ArraysOfAHostWithoutVersion, AreThoseOfAnOldOne) {
    EXPECT_NE(directData(runtime.array(ElementType::Integer, {1})), nullptr);
}

} // namespace
} // namespace zqm::host::test
