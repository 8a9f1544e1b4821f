// Declarations in host syntax:
//
//   name(a as Integer, byref b as NSErrorZQM, c() as String, d as Integer = 1, Assigns v as Variant) as
//   String()
//
// A parameter list without parameters may be left out, with or without its parentheses, as may the result.

#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::host {

enum class TypeKind {
    Boolean,
    Int32,
    UInt32,
    Integer, // 64 bits
    Single,
    Double,
    String,
    Text,
    Variant,
    Ptr,
    Object, // of a class
};

struct Type {
    TypeKind kind = TypeKind::Object;
    std::string className; // of TypeKind::Object, as written
    bool isArray = false;
};

struct Parameter {
    std::string name;
    Type type;
    bool byRef = false;
    bool assigns = false;
    std::optional<std::string> defaultValue; // the literal as written
};

struct Declaration {
    std::string name;
    std::vector<Parameter> parameters;
    std::optional<Type> result;
};

class DeclarationError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Each throws DeclarationError, which says what is wrong and where.
Declaration parseDeclaration(std::string_view text);
// As a plugin asks for a method: a list of parameters alone stands for the constructor that takes them.
Declaration parseAskedDeclaration(std::string_view text);
Type parseType(std::string_view text);

bool sameType(const Type& one, const Type& other);
// Same types in the same order: two methods that no call can tell apart.
bool sameParameters(const Declaration& one, const Declaration& other);
// The same name, parameters and result.
bool sameSignature(const Declaration& one, const Declaration& other);

std::string nameOf(const Type& type); // without the parentheses of an array
std::string describe(const Type& type);
std::string describe(const Declaration& declaration);

} // namespace zqm::host
