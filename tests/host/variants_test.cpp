#include "tests/host/plain_host.h"

#include <cmath>
#include <limits>
#include <vector>

namespace zqm::host::test {
namespace {

using testing::HasSubstr;

constexpr const char* kVarType = "VarType(value As Variant) As Int32";

class Variants : public PlainHost {
protected:
    std::int32_t codeOf(const Object& variant) {
        return globalMethod<std::int32_t(REALobject)>(kVarType)(variant.handle());
    }
    std::string textOf(const Object& variant) {
        return runtime.adopt(call<REALstring>("VariantToString", variant.handle())).text();
    }
    std::int64_t integerOf(const Object& variant) {
        return call<std::int64_t>("VariantToInt64", variant.handle());
    }
    double realOf(const Object& variant) { return call<double>("VariantToDouble", variant.handle()); }
};

TEST_F(Variants, MadeByAPluginHoldWhatTheyWereMadeOf) {
    const String text = runtime.string("text", encoding::kMacRoman);
    const Object string = runtime.adopt(call<REALobject>("StringToVariant", text.handle()));
    EXPECT_EQ(codeOf(string), 8);
    EXPECT_EQ(string.variantValue().asString().handle(), text.handle());

    const auto made = [&](const char* name, auto value) {
        return runtime.adopt(call<REALobject>(name, value));
    };
    const Object integer = made("IntegerToVariant", std::int64_t{-7});
    EXPECT_EQ(codeOf(integer), 2);
    EXPECT_EQ(integerOf(integer), -7);
    const Object unsignedOne = made("UInt32ToVariant", std::uint32_t{4294967295});
    EXPECT_EQ(codeOf(unsignedOne), 3);
    EXPECT_EQ(integerOf(unsignedOne), 4294967295);
    const Object single = made("SingleToVariant", 0.1F);
    EXPECT_EQ(codeOf(single), 4);
    EXPECT_EQ(call<float>("VariantToSingle", single.handle()), 0.1F);
    const Object real = made("DoubleToVariant", 0.1);
    EXPECT_EQ(codeOf(real), 5);
    EXPECT_EQ(realOf(real), 0.1);
    const Object flag = made("BooleanToVariant", true);
    EXPECT_EQ(codeOf(flag), 11);
    EXPECT_EQ(integerOf(flag), 1);
}

TEST_F(Variants, OfANilStringIsAStringNotNil) {
    const Object variant =
        runtime.adopt(call<REALobject>("StringToVariant", static_cast<REALstring>(nullptr)));
    ASSERT_FALSE(variant.isNull());
    EXPECT_EQ(codeOf(variant), 8);
    EXPECT_EQ(textOf(variant), "");
}

TEST_F(Variants, StringsAreHeldWithALockAndAnsweredWithOne) {
    const String text = runtime.string("text");
    const Object variant = runtime.adopt(call<REALobject>("StringToVariant", text.handle()));
    EXPECT_EQ(runtime.ledger().strings, (Ledger::Count{1, 2}));
    const String read = runtime.adopt(call<REALstring>("VariantToString", variant.handle()));
    EXPECT_EQ(read.handle(), text.handle());
    EXPECT_EQ(runtime.ledger().strings, (Ledger::Count{1, 3}));
}

struct Reading {
    Value value;
    const char* text;
    std::int64_t integer;
    double real;
};

TEST_F(Variants, AreReadAsOtherTypes) {
    constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
    constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();
    const std::vector<Reading> readings{
        {"12", "12", 12, 12},
        {" 12.75abc", " 12.75abc", 12, 12.75},
        {"-3", "-3", -3, -3},
        {"1e3", "1e3", 1000, 1000},
        {"9223372036854775807", "9223372036854775807", kMost, 0x1p63},
        {"99999999999999999999", "99999999999999999999", kMost, 1e20},
        {"abc", "abc", 0, 0},
        {"", "", 0, 0},
        {"  ", "  ", 0, 0},
        {7, "7", 7, 7},
        {kLeast, "-9223372036854775808", kLeast, -0x1p63},
        {2.5, "2.5", 2, 2.5},
        {-2.5, "-2.5", -2, -2.5},
        {0.1, "0.1", 0, 0.1},
        {1e300, "1e+300", kMost, 1e300},
        {-1e300, "-1e+300", kLeast, -1e300},
        {true, "True", 1, 1},
        {false, "False", 0, 0},
        {runtime.text("40"), "40", 40, 40},
    };
    for (const Reading& one : readings) {
        const Object variant = runtime.variant(one.value);
        EXPECT_EQ(textOf(variant), one.text);
        EXPECT_EQ(integerOf(variant), one.integer) << one.text;
        EXPECT_EQ(realOf(variant), one.real) << one.text;
        EXPECT_EQ(call<float>("VariantToSingle", variant.handle()), static_cast<float>(one.real)) << one.text;
    }
}

TEST_F(Variants, OfNumbersThatAreNoneReadAsZero) {
    EXPECT_EQ(integerOf(runtime.variant(std::nan(""))), 0);
    EXPECT_TRUE(std::isnan(realOf(runtime.variant(std::nan("")))));
    EXPECT_EQ(integerOf(runtime.variant(std::numeric_limits<double>::infinity())),
              std::numeric_limits<std::int64_t>::max());
}

TEST_F(Variants, ThatCannotBeConvertedReadAsNothing) {
    for (const Object& object : {Object(), Object(runtime.dictionary()), runtime.date(2020),
                                 Object(runtime.array(ElementType::Integer, {1})), runtime.variant(9, {})}) {
        EXPECT_EQ(call<REALstring>("VariantToString", object.handle()), nullptr);
        EXPECT_EQ(integerOf(object), 0);
        EXPECT_EQ(realOf(object), 0);
        EXPECT_EQ(call<float>("VariantToSingle", object.handle()), 0);
    }
}

TEST_F(Variants, OfBytesThatAreNoTextReadAsTheyStandAndAsZero) {
    const String bytes = runtime.string("\xFF\xFE\xFD");
    const Object variant = runtime.variant(bytes);
    EXPECT_EQ(integerOf(variant), 0);
    EXPECT_EQ(runtime.adopt(call<REALstring>("VariantToString", variant.handle())).handle(), bytes.handle());
}

TEST_F(Variants, TypeIsThatOfWhatTheyHold) {
    EXPECT_EQ(codeOf(Object()), 0);
    EXPECT_EQ(codeOf(runtime.dictionary()), 9);
    EXPECT_EQ(codeOf(runtime.date(2020)), 7);
    EXPECT_EQ(codeOf(runtime.variant(runtime.text("x"))), 37);
    for (const auto type : {ElementType::Integer, ElementType::Int64, ElementType::Single,
                            ElementType::Double, ElementType::Date, ElementType::String, ElementType::Object,
                            ElementType::Boolean, ElementType::Text}) {
        EXPECT_EQ(codeOf(runtime.array(type)), 4096 + static_cast<int>(type));
    }
}

TEST_F(Variants, OfAnyCodeCanBeMade) {
    for (std::int32_t code = 0; code <= 4200; ++code) {
        const Object variant = runtime.variant(code, 42);
        ASSERT_EQ(codeOf(variant), code);
        ASSERT_EQ(variant.variantType(), code);
        ASSERT_EQ(integerOf(variant), 42);
    }
    EXPECT_EQ(textOf(runtime.variant(8, "text")), "text");
}

TEST_F(Variants, InsideOfVariantsAreReadThrough) {
    EXPECT_EQ(integerOf(runtime.variant(9, runtime.variant(2, 5))), 5);
}

TEST_F(Variants, HavePropertiesThatAPluginReads) {
    const Object variant = runtime.variant(16, 2.5);
    std::int64_t integer = 0;
    EXPECT_TRUE(call<bool>("REALGetPropValueInteger", variant.handle(), "Type", &integer));
    EXPECT_EQ(integer, 16);
    EXPECT_TRUE(call<bool>("REALGetPropValueInt64", variant.handle(), "LongValue", &integer));
    EXPECT_EQ(integer, 2);
    float single = 0;
    EXPECT_TRUE(call<bool>("REALGetPropValueSingle", variant.handle(), "SingleValue", &single));
    EXPECT_EQ(single, 2.5F);
    double real = 0;
    EXPECT_TRUE(call<bool>("REALGetPropValueDouble", variant.handle(), "DoubleValue", &real));
    EXPECT_EQ(real, 2.5);
    REALstring text = nullptr;
    EXPECT_TRUE(call<bool>("REALGetPropValueString", variant.handle(), "StringValue", &text));
    EXPECT_EQ(runtime.adopt(text).text(), "2.5");
    EXPECT_FALSE(call<bool>("REALGetPropValueString", variant.handle(), "Nothing", &text));
    EXPECT_FALSE(call<bool>("REALSetPropValueInteger", variant.handle(), "Type", std::int64_t{3}));
}

TEST_F(Variants, HaveADateWhenTheyHoldOne) {
    const Object date = runtime.date(2020, 5, 17);
    for (const Object& variant : {runtime.variant(7, date), runtime.variant(date)}) {
        REALobject read = nullptr;
        EXPECT_TRUE(call<bool>("REALGetPropValueObject", variant.handle(), "DateValue", &read));
        EXPECT_EQ(runtime.adopt(read), date);
    }
    REALobject read = date.handle();
    EXPECT_TRUE(call<bool>("REALGetPropValueObject", runtime.variant(7, 42).handle(), "DateValue", &read));
    EXPECT_EQ(read, nullptr);
}

TEST_F(Variants, OfTheHostProgramReadBackAsValues) {
    EXPECT_EQ(Value(runtime.variant(3)).asInteger(), 3);
    EXPECT_EQ(Value(runtime.variant(3)).asDouble(), 3);
    EXPECT_EQ(Value(runtime.variant(0.5)).asDouble(), 0.5);
    EXPECT_TRUE(Value(runtime.variant(true)).asBool());
    EXPECT_EQ(Value(runtime.variant("x")).asText(), "x");
    EXPECT_EQ(Value(runtime.variant("x")).asString().bytes(), "x");
    EXPECT_EQ(Value(runtime.variant(runtime.text("x"))).asHostText().text(), "x");
    EXPECT_TRUE(runtime.variant(Value()).isNull());
    EXPECT_THROW(Value(runtime.variant("x")).asInteger(), CallError);
    EXPECT_EQ(Object().variantType(), 0);
    EXPECT_TRUE(Object().variantValue().isNull());
    EXPECT_EQ(runtime.variant(3).className(), "Variant");
}

TEST_F(Variants, AreNotCreatedByTheirName) {
    for (const char* name : {"Variant", "Array"}) {
        EXPECT_EQ(call<REALobject>("PluginNewInstance", name), nullptr);
        EXPECT_THROW(runtime.create(name), CallError);
    }
}

TEST_F(Variants, MisuseIsReported) {
    const Object dictionary = runtime.dictionary();
    auto* noString = reinterpret_cast<REALstring>(dictionary.handle());
    EXPECT_EQ(call<REALobject>("StringToVariant", noString), nullptr);
    expectReport(Report::Kind::WrongKind, "StringToVariant: an object instead of a string");
    const String string = runtime.string("x");
    auto* noObject = reinterpret_cast<REALobject>(string.handle());
    EXPECT_EQ(call<REALstring>("VariantToString", noObject), nullptr);
    expectReport(Report::Kind::WrongKind, "VariantToString: a string instead of an object");
    for (const char* name : {"VariantToInt64", "VariantToDouble", "VariantToSingle"}) {
        call<std::int64_t>(name, deadObject());
        expectReport(Report::Kind::DeadHandle, name);
        call<std::int64_t>(name, reinterpret_cast<REALobject>(this));
        expectReport(Report::Kind::ForeignHandle, name);
    }
    globalMethod<std::int32_t(REALobject)>(kVarType)(noObject);
    expectReport(Report::Kind::WrongKind, "VarType: a string instead of an object");
}

TEST_F(Variants, PropertiesAreThoseOfAllObjects) {
    const Object date = runtime.date(2020);
    for (const auto& [object, code] : {std::pair(Object(runtime.dictionary()), 9), std::pair(date, 7),
                                       std::pair(Object(runtime.array(ElementType::String)), 4104)}) {
        std::int64_t integer = 5;
        EXPECT_TRUE(call<bool>("REALGetPropValueInteger", object.handle(), "Type", &integer));
        EXPECT_EQ(integer, code);
        EXPECT_TRUE(call<bool>("REALGetPropValueInt64", object.handle(), "LongValue", &integer));
        EXPECT_EQ(integer, 0);
        REALstring text = nullptr;
        EXPECT_TRUE(call<bool>("REALGetPropValueString", object.handle(), "StringValue", &text));
        EXPECT_EQ(text, nullptr);
        REALobject read = nullptr;
        EXPECT_TRUE(call<bool>("REALGetPropValueObject", object.handle(), "DateValue", &read));
        EXPECT_EQ(runtime.adopt(read), object == date ? date : Object());
    }
}

TEST_F(Variants, PropertiesGiveWayToThoseOfTheClass) {
    call<void>("RegisterPluginVersion", std::int32_t{13});
    const PropertyRecord properties[] = {{.name = "Type",
                                          .type = "Boolean",
                                          .getter = static_cast<bool (*)(REALobject, std::int64_t)>(
                                              [](REALobject, std::int64_t) { return true; })}};
    ClassRecord record{.version = 13,
                       .name = "Typed",
                       .dataSize = 16,
                       .constructor = nullptr,
                       .destructor = nullptr,
                       .properties = properties,
                       .propertyCount = 1};
    runtime.registerClass(record);
    const Object typed = runtime.create("Typed");
    EXPECT_TRUE(typed.get("Type").asBool());
    std::int64_t integer = 0;
    EXPECT_FALSE(call<bool>("REALGetPropValueInteger", typed.handle(), "Type", &integer));
}

TEST(HostsWithoutVarType, AnswerNullForIt) {
    Runtime runtime(Options{.without = {"vartype"}});
    const auto load = [](const char* declaration) {
        return call<void*>("REALLoadGlobalMethod", static_cast<const char*>(nullptr), declaration);
    };
    EXPECT_EQ(load(kVarType), nullptr);
    EXPECT_NE(load("LenB(s as String) as Integer"), nullptr);
    EXPECT_EQ(runtime.variant(5).get("Type").asInteger(), 2);
}

TEST(HostsWithoutVarType, AreToldMethodsThatThereAre) {
    EXPECT_THROW(Runtime(Options{.without = {"Nothing"}}), CallError);
    EXPECT_NO_THROW(Runtime());
}

} // namespace
} // namespace zqm::host::test
