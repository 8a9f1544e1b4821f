#include "tests/bridge/tree.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace trees {

namespace {

std::string inHexadecimal(double number) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%a", number);
    return text.data();
}

std::vector<std::string> lines(const std::vector<Tree>& parts) {
    std::vector<std::string> all;
    for (const Tree& part : parts) {
        all.push_back(line(part));
    }
    return all;
}

std::vector<std::string> pairs(const std::vector<Tree>& parts) {
    std::vector<std::string> all;
    for (std::size_t i = 0; i + 1 < parts.size(); i += 2) {
        all.push_back(line(parts[i]) + ":" + line(parts[i + 1]));
    }
    return all;
}

bool isCollection(Kind kind) {
    return kind == Kind::Array || kind == Kind::TypedArray || kind == Kind::Set || kind == Kind::Dictionary;
}

} // namespace

std::string joined(std::vector<std::string> lines, bool isOrdered, const char* brackets) {
    if (!isOrdered) {
        std::ranges::sort(lines);
    }
    std::string all(1, brackets[0]);
    for (const std::string& one : lines) {
        all += one + ",";
    }
    return all + brackets[1];
}

std::string line(const Tree& tree) {
    switch (tree.kind) {
    case Kind::Nothing:
        return "nil";
    case Kind::Boolean:
        return tree.integer != 0 ? "true" : "false";
    case Kind::Integer:
        return "i" + std::to_string(tree.integer);
    case Kind::Int64:
        return "j" + std::to_string(tree.integer);
    case Kind::Unsigned:
        return "u" + std::to_string(static_cast<std::uint64_t>(tree.integer));
    case Kind::Single:
        return "f" + inHexadecimal(tree.real);
    case Kind::Double:
        return "d" + inHexadecimal(tree.real);
    case Kind::String:
        return "\"" + tree.text + "\"";
    case Kind::Text:
        return "t\"" + tree.text + "\"";
    case Kind::Address:
        return "<" + tree.text + ">";
    case Kind::Date:
        return "@" + std::to_string(tree.integer) + (tree.real != 0 ? "+" + inHexadecimal(tree.real) : "");
    case Kind::Data:
        return "#" + tree.text + "#";
    case Kind::Thing:
        return "*" + std::to_string(tree.integer);
    case Kind::Array:
    case Kind::TypedArray:
        return joined(lines(tree.parts), true, "[]");
    case Kind::Set:
        return joined(lines(tree.parts), false, "()");
    case Kind::Dictionary:
        return joined(pairs(tree.parts), false, "{}");
    }
    return {};
}

std::string Generator::text() {
    static constexpr std::array kPieces{"a", "Z", " ", "é", "世", "\U0001F600", "\n", "\"", "0"};
    std::string made;
    for (std::uint64_t left = below(6); left > 0; --left) {
        made += kPieces[below(kPieces.size())];
    }
    return made;
}

Tree Generator::scalar(Kind kind) {
    Tree made{.kind = kind};
    switch (kind) {
    case Kind::Boolean:
        made.integer = static_cast<std::int64_t>(below(2));
        break;
    case Kind::Integer:
    case Kind::Int64:
    case Kind::Unsigned:
        // Of every size.
        made.integer = static_cast<std::int64_t>(random_() >> below(64));
        if (kind != Kind::Unsigned && below(2) != 0) {
            made.integer = -(made.integer / 2);
        }
        break;
    case Kind::Single:
        made.real = static_cast<float>(static_cast<double>(below(2000)) / 16.0 - 50);
        break;
    case Kind::Double:
        made.real = (static_cast<double>(random_()) / 3e9 - 1e9) / 7;
        break;
    case Kind::String:
    case Kind::Text:
        made.text = text();
        break;
    case Kind::Address:
        made.text = "http://example.org/" + std::to_string(below(1000));
        break;
    case Kind::Date:
        made.integer = static_cast<std::int64_t>(below(4'000'000'000)) - 1'000'000'000;
        made.real = static_cast<double>(below(4)) / 4;
        break;
    case Kind::Data:
        for (std::uint64_t left = below(4); left > 0; --left) {
            made.text += static_cast<char>(below(256));
        }
        break;
    case Kind::Thing:
        made.integer = ++things_;
        break;
    default:
        break;
    }
    return made;
}

// Different from those of other numbers in every kind of dictionary.
Tree Generator::key(std::size_t number) {
    if (below(4) == 0) {
        return {.kind = Kind::Integer, .integer = static_cast<std::int64_t>(number) + 1000};
    }
    return {.kind = Kind::String, .text = text() + "/" + std::to_string(number)};
}

// The outermost is a collection, the innermost are none.
Tree Generator::tree(int depth) {
    Kind kind{};
    do {
        kind = kinds_[below(kinds_.size())];
    } while ((depth == kDepth && !isCollection(kind)) || (depth == 0 && isCollection(kind)));
    if (!isCollection(kind)) {
        return scalar(kind);
    }
    Tree made{.kind = kind};
    const std::uint64_t size = below(5);
    if (kind == Kind::TypedArray) {
        static constexpr std::array kElements{Kind::Integer, Kind::Int64,  Kind::Single, Kind::Double,
                                              Kind::Boolean, Kind::String, Kind::Text,   Kind::Date};
        made.integer = static_cast<std::int64_t>(kElements[below(kElements.size())]);
        for (std::uint64_t i = 0; i < size; ++i) {
            made.parts.push_back(scalar(static_cast<Kind>(made.integer)));
        }
        return made;
    }
    for (std::uint64_t i = 0; i < size; ++i) {
        if (kind == Kind::Dictionary) {
            made.parts.push_back(key(i));
        }
        made.parts.push_back(tree(depth - 1));
    }
    return made;
}

} // namespace trees
