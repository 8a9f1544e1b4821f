// Nested values, and what becomes of them on their way through the other side's kinds of values.

#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace trees {

enum class Kind {
    Nothing,
    Boolean,
    Integer,
    Int64,    // the host's second kind of integer
    Unsigned, // of 64 bits
    Single,
    Double,
    String,
    Text, // the host's second kind of string
    Address,
    Date,
    Data,
    Thing, // an object of one's own: it is a number's, and must stay that very object
    Array,
    TypedArray, // of one kind of scalars
    Set,
    Dictionary, // keys and values by turns
};

struct Tree {
    Kind kind = Kind::Nothing;
    std::int64_t integer = 0; // also Booleans, the seconds of dates, the number of a thing
    double real = 0;          // also a date's fraction of a second
    std::string text = {};    // also bytes
    std::vector<Tree> parts = {};
};

// One line that tells two values apart. The pairs of dictionaries and the parts of sets are in the order of
// their lines, since they have none of their own.
std::string line(const Tree& tree);
std::string joined(std::vector<std::string> lines, bool isOrdered, const char* brackets);

// Nested values of these kinds.
class Generator {
public:
    Generator(std::uint32_t seed, std::vector<Kind> kinds) : random_(seed), kinds_(std::move(kinds)) {}
    Tree next() { return tree(kDepth); }

private:
    static constexpr int kDepth = 4;

    Tree tree(int depth);
    Tree scalar(Kind kind);
    Tree key(std::size_t number);
    std::string text();
    std::uint64_t below(std::uint64_t limit) { return random_() % limit; }

    std::mt19937_64 random_;
    std::vector<Kind> kinds_;
    std::int64_t things_ = 0;
};

} // namespace trees
