#include "declaration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace zqm::host {
namespace {

using testing::HasSubstr;

struct Good {
    const char* text;
    const char* meaning;
};

class GoodDeclaration : public testing::TestWithParam<Good> {};

TEST_P(GoodDeclaration, IsRead) {
    EXPECT_EQ(describe(parseDeclaration(GetParam().text)), GetParam().meaning);
}

INSTANTIATE_TEST_SUITE_P(
    All, GoodDeclaration,
    testing::Values(Good{"Constructor", "Constructor()"}, Good{"Constructor()", "Constructor()"},
                    Good{"Constructor ( )", "Constructor()"},
                    Good{"_exception as NSExceptionZQM", "_exception() as NSExceptionZQM"},
                    Good{"availableVoices as String()", "availableVoices() as String()"},
                    Good{"LenB( s as string ) as integer", "LenB(s as String) as Integer"},
                    Good{"start(Text as String, File as folderitem) as boolean",
                         "start(Text as String, File as folderitem) as Boolean"},
                    Good{"f(byref error as NSErrorZQM)", "f(byref error as NSErrorZQM)"},
                    Good{"f(ByVal number AS int32)", "f(number as Int32)"},
                    Good{"f(values() as Double)", "f(values as Double())"},
                    Good{"f(values as Double())", "f(values as Double())"},
                    Good{"Value(key As Variant, Assigns _value As Variant)",
                         "Value(key as Variant, assigns _value as Variant)"},
                    Good{"f(a as Integer = 1, b as Double=-2.5, c as Boolean = True, d as String = \"x, y\", "
                         "e as Foo = nil)",
                         "f(a as Integer = 1, b as Double = -2.5, c as Boolean = True, d as String = \"x, "
                         "y\", e as Foo = nil)"},
                    Good{"f(a as Integer = 1, Assigns b as Integer)",
                         "f(a as Integer = 1, assigns b as Integer)"},
                    Good{"f(a as Module.Thing) as Module.Thing", "f(a as Module.Thing) as Module.Thing"},
                    Good{"\tf\t( a as UINT32 , b as single )", "f(a as UInt32, b as Single)"},
                    Good{"f as Ptr", "f() as Ptr"}, Good{"f(assist as Text)", "f(assist as Text)"}));

TEST(AskedDeclaration, OfParametersAloneIsTheConstructor) {
    const auto asked = [](const char* text) { return describe(parseAskedDeclaration(text)); };
    EXPECT_EQ(asked("Year as Integer, month as Integer = 1"),
              "Constructor(Year as Integer, month as Integer = 1)");
    EXPECT_EQ(asked("list() as String, other as Integer"), "Constructor(list as String(), other as Integer)");
    EXPECT_EQ(asked("Year as Integer = 5"), "Constructor(Year as Integer = 5)");
    EXPECT_EQ(asked("Year as Integer"), "Year() as Integer");
    EXPECT_EQ(asked("Key(index as Integer) as Variant"), "Key(index as Integer) as Variant");
    EXPECT_EQ(asked("stop"), "stop()");
    for (const char* bad : {"", "Year as Integer,", "Year as, b as Integer", "a as Integer b as Integer",
                            "a as Integer, a as Integer", "a,b"}) {
        EXPECT_THROW(parseAskedDeclaration(bad), DeclarationError) << bad;
    }
}

struct Bad {
    const char* text;
    const char* complaint;
};

class BadDeclaration : public testing::TestWithParam<Bad> {};

TEST_P(BadDeclaration, IsRefusedWithItsFault) {
    try {
        parseDeclaration(GetParam().text);
        FAIL() << GetParam().text << " was read";
    } catch (const DeclarationError& error) {
        EXPECT_THAT(error.what(), HasSubstr(GetParam().complaint));
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, BadDeclaration,
    testing::Values(Bad{"", "a name expected"}, Bad{"   ", "a name expected"}, Bad{"1f", "a name expected"},
                    Bad{"as Integer", "not \"as\""}, Bad{"f(", "name of a parameter expected"},
                    Bad{"f(a as Integer", "')' expected"}, Bad{"f(a)", "\"as\" expected"},
                    Bad{"f(a as)", "a type expected"},
                    Bad{"f(a as Integer,)", "name of a parameter expected"},
                    Bad{"f(,a as Integer)", "name of a parameter expected"}, Bad{"f as", "a type expected"},
                    Bad{"f as Integer rubbish", "nothing more expected"}, Bad{"f)", "nothing more expected"},
                    Bad{"f(a as Integer, A as String)", "stands twice"},
                    Bad{"f(a as Integer = 1, b as Integer)", "needs a default value"},
                    Bad{"f(assigns a as Integer, b as Integer)", "after the assigned one"},
                    Bad{"f(a as Integer = )", "a value expected"},
                    Bad{"f(a as Integer = -)", "a value expected"},
                    Bad{"f(a as Integer = x)", "not constant"}, Bad{"f(a as String = \"x)", "closing quote"},
                    Bad{"f(a() as Integer())", "array of arrays"}, Bad{"f(a as Module.)", "a type expected"},
                    Bad{"f(byref as Integer)", "name of a parameter expected, not \"as\""},
                    Bad{"f(a as Integer(3))", "')' expected"}, Bad{"f(a asInteger)", "\"as\" expected"},
                    Bad{"f\n", "nothing more expected"}));

TEST(Type, IsReadAlone) {
    EXPECT_EQ(describe(parseType("double")), "Double");
    EXPECT_EQ(describe(parseType(" string() ")), "String()");
    EXPECT_THROW(parseType(""), DeclarationError);
    EXPECT_THROW(parseType("Integer = 1"), DeclarationError);
}

TEST(Signature, IgnoresCaseAndParameterNames) {
    const auto one = parseDeclaration("LenB(s as String) as Integer");
    EXPECT_TRUE(sameSignature(one, parseDeclaration("lenb( text AS string ) as INT64")));
    EXPECT_FALSE(sameSignature(one, parseDeclaration("LenB(s as String)")));
    EXPECT_FALSE(sameSignature(one, parseDeclaration("LenB(byref s as String) as Integer")));
    EXPECT_FALSE(sameSignature(one, parseDeclaration("LenB(s() as String) as Integer")));
    EXPECT_FALSE(sameSignature(one, parseDeclaration("Len(s as String) as Integer")));
    EXPECT_FALSE(sameSignature(one, parseDeclaration("LenB(s as String) as Int32")));
    EXPECT_FALSE(sameSignature(parseDeclaration("f(a as Foo)"), parseDeclaration("f(a as Bar)")));
}

} // namespace
} // namespace zqm::host
