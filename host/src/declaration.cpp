#include "declaration.h"

#include "class_describer.h"
#include "text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zqm::host {

namespace {

struct NamedType {
    std::string_view name;
    TypeKind kind;
};
constexpr std::array kTypes{
    NamedType{"Boolean", TypeKind::Boolean}, NamedType{"Int32", TypeKind::Int32},
    NamedType{"UInt32", TypeKind::UInt32},   NamedType{"Integer", TypeKind::Integer},
    NamedType{"Int64", TypeKind::Integer},   NamedType{"Single", TypeKind::Single},
    NamedType{"Double", TypeKind::Double},   NamedType{"String", TypeKind::String},
    NamedType{"Text", TypeKind::Text},       NamedType{"Variant", TypeKind::Variant},
    NamedType{"Ptr", TypeKind::Ptr},
};

constexpr std::array<std::string_view, 4> kKeywords{"as", "byref", "byval", "assigns"};

bool isKeyword(std::string_view word) {
    return std::ranges::any_of(kKeywords,
                               [word](std::string_view keyword) { return sameName(word, keyword); });
}

bool startsName(char letter) {
    return (lowered(letter) >= 'a' && lowered(letter) <= 'z') || letter == '_';
}
bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}
bool isBlank(char letter) {
    return letter == ' ' || letter == '\t';
}

class Parser {
public:
    explicit Parser(std::string_view text) : text_(text) {}

    Declaration declaration() {
        Declaration result;
        result.name = name("a name");
        if (take('(')) {
            if (!take(')')) {
                parameters(result);
                expect(')');
            }
        }
        if (takeWord("as")) {
            result.result = type();
        }
        end();
        return result;
    }

    // A lone "name as type" is a declaration with a result.
    bool isParameterList() {
        const std::size_t start = at_;
        bool list = false;
        if (startsHere()) {
            name("a name");
            emptyParentheses();
            if (takeWord("as") && startsHere()) {
                type();
                list = take(',') || take('=');
            }
        }
        at_ = start;
        return list;
    }

    Declaration constructor() {
        Declaration result;
        result.name = "Constructor";
        parameters(result);
        end();
        return result;
    }

    Type wholeType() {
        Type result = type();
        end();
        return result;
    }

private:
    void parameters(Declaration& declaration) {
        do {
            parameter(declaration);
        } while (take(','));
    }

    void parameter(Declaration& declaration) {
        Parameter parameter;
        parameter.byRef = takeWord("byref");
        if (!parameter.byRef) {
            takeWord("byval");
        }
        parameter.assigns = takeWord("assigns");
        parameter.name = name("the name of a parameter");
        const bool arrayName = emptyParentheses();
        if (!takeWord("as")) {
            fail("\"as\" expected");
        }
        parameter.type = type();
        if (arrayName && parameter.type.isArray) {
            fail("an array of arrays");
        }
        parameter.type.isArray = parameter.type.isArray || arrayName;
        if (take('=')) {
            parameter.defaultValue = literal();
        }
        check(declaration, parameter);
        declaration.parameters.push_back(std::move(parameter));
    }

    void check(const Declaration& declaration, const Parameter& parameter) {
        const auto& before = declaration.parameters;
        if (std::ranges::any_of(before,
                                [&](const Parameter& one) { return sameName(one.name, parameter.name); })) {
            fail("parameter " + inQuotes(parameter.name) + " stands twice");
        }
        if (!before.empty() && before.back().assigns) {
            fail("a parameter after the assigned one");
        }
        if (!before.empty() && before.back().defaultValue && !parameter.defaultValue && !parameter.assigns) {
            fail("parameter " + inQuotes(parameter.name) +
                 " needs a default value, since the one before has one");
        }
    }

    Type type() {
        const std::string written = name("a type");
        Type result;
        const auto* known = std::ranges::find_if(
            kTypes, [&](const NamedType& candidate) { return sameName(candidate.name, written); });
        if (known != kTypes.end()) {
            result.kind = known->kind;
        } else {
            result.className = written;
        }
        result.isArray = emptyParentheses();
        return result;
    }

    std::string literal() {
        skipBlanks();
        const std::size_t start = at_;
        if (at_ < text_.size() && text_[at_] == '"') {
            const std::size_t close = text_.find('"', at_ + 1);
            if (close == std::string_view::npos) {
                fail("a text without its closing quote");
            }
            at_ = close + 1;
        } else if (at_ < text_.size() && startsName(text_[at_])) {
            const std::string word = name("a value");
            if (!sameName(word, "true") && !sameName(word, "false") && !sameName(word, "nil")) {
                fail("value " + inQuotes(word) + " is not constant");
            }
        } else {
            number();
        }
        return std::string(text_.substr(start, at_ - start));
    }

    void number() {
        if (at_ < text_.size() && (text_[at_] == '-' || text_[at_] == '+')) {
            ++at_;
        }
        std::size_t digits = digitsHere();
        if (at_ < text_.size() && text_[at_] == '.') {
            ++at_;
            digits += digitsHere();
        }
        if (digits == 0) {
            fail("a value expected");
        }
    }

    std::size_t digitsHere() {
        const std::size_t start = at_;
        while (at_ < text_.size() && isDigit(text_[at_])) {
            ++at_;
        }
        return at_ - start;
    }

    // A word, or several joined by dots: Module.Class.
    std::string name(const char* what) {
        skipBlanks();
        const std::size_t start = at_;
        do {
            if (at_ > start) {
                ++at_;
            }
            if (at_ >= text_.size() || !startsName(text_[at_])) {
                fail(std::string(what) + " expected");
            }
            while (at_ < text_.size() && (startsName(text_[at_]) || isDigit(text_[at_]))) {
                ++at_;
            }
        } while (at_ < text_.size() && text_[at_] == '.');
        std::string word(text_.substr(start, at_ - start));
        if (isKeyword(word)) {
            fail(std::string(what) + " expected, not " + inQuotes(word));
        }
        return word;
    }

    bool startsHere() {
        skipBlanks();
        return at_ < text_.size() && startsName(text_[at_]);
    }

    bool emptyParentheses() {
        const std::size_t before = at_;
        if (take('(') && take(')')) {
            return true;
        }
        at_ = before;
        return false;
    }

    bool takeWord(std::string_view word) {
        skipBlanks();
        const std::size_t after = at_ + word.size();
        if (after > text_.size() || !sameName(text_.substr(at_, word.size()), word)) {
            return false;
        }
        if (after < text_.size() && (startsName(text_[after]) || isDigit(text_[after]))) {
            return false;
        }
        at_ = after;
        return true;
    }

    bool take(char sign) {
        skipBlanks();
        if (at_ >= text_.size() || text_[at_] != sign) {
            return false;
        }
        ++at_;
        return true;
    }

    void expect(char sign) {
        if (!take(sign)) {
            fail("'" + std::string(1, sign) + "' expected");
        }
    }

    void end() {
        skipBlanks();
        if (at_ != text_.size()) {
            fail("nothing more expected");
        }
    }

    void skipBlanks() {
        while (at_ < text_.size() && isBlank(text_[at_])) {
            ++at_;
        }
    }

    [[noreturn]] void fail(const std::string& what) const {
        throw DeclarationError(what + " at character " + std::to_string(at_ + 1) + " of " + inQuotes(text_));
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

} // namespace

Declaration parseDeclaration(std::string_view text) {
    return Parser(text).declaration();
}

Declaration parseAskedDeclaration(std::string_view text) {
    Parser parser(text);
    return parser.isParameterList() ? parser.constructor() : parser.declaration();
}

Type parseType(std::string_view text) {
    return Parser(text).wholeType();
}

bool sameType(const Type& one, const Type& other) {
    return one.kind == other.kind && one.isArray == other.isArray && sameName(one.className, other.className);
}

bool sameParameters(const Declaration& one, const Declaration& other) {
    return std::ranges::equal(one.parameters, other.parameters,
                              [](const Parameter& left, const Parameter& right) {
                                  return left.byRef == right.byRef && left.assigns == right.assigns &&
                                         sameType(left.type, right.type);
                              });
}

bool sameSignature(const Declaration& one, const Declaration& other) {
    const bool sameResult = one.result && other.result ? sameType(*one.result, *other.result)
                                                       : one.result.has_value() == other.result.has_value();
    return sameResult && sameName(one.name, other.name) && sameParameters(one, other);
}

std::string nameOf(const Type& type) {
    if (type.kind == TypeKind::Object) {
        return type.className;
    }
    return std::string(std::ranges::find(kTypes, type.kind, &NamedType::kind)->name);
}

std::string describe(const Type& type) {
    return host::declaration(descriptionOf(type));
}

std::string describe(const Declaration& declaration) {
    return host::declaration(descriptionOf(declaration));
}

} // namespace zqm::host
