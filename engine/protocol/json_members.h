// Reading a line of JSON member by member, taking nothing that isn't meant.

#pragma once

#include <cstdint>
#include <exception>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace zqm::protocol {

// Thrown when a line is no message; caught before it leaves the protocol.
struct Malformed : std::exception {};

inline void require(bool condition) {
    if (!condition) {
        throw Malformed();
    }
}

// Refuses what the library alone would let pass: a member that stands twice, nesting that no message has,
// and a NUL, which it takes for the end.
nlohmann::json parseLine(std::string_view text);

// As a message holds it: an infinite one as the largest, and what is not a number as null.
nlohmann::json number(double value);

// An object whose members are taken one by one, and which must be empty in the end.
class Members {
public:
    explicit Members(nlohmann::json& value) : object_(value) { require(value.is_object()); }

    [[nodiscard]] bool has(const char* name) const { return object_.contains(name); }

    nlohmann::json take(const char* name);
    nlohmann::json list(const char* name);
    std::string string(const char* name);
    std::string nonEmpty(const char* name);
    // A name in a folder; empty is none.
    std::string fileName(const char* name);
    std::string optionalError() { return has("error") ? nonEmpty("error") : std::string(); }
    std::uint64_t natural(const char* name, std::uint64_t least = 0, std::uint64_t most = UINT64_MAX);
    std::uint64_t utterance() { return natural("utterance", 1); }
    int integer(const char* name);
    // Null is not a number.
    double real(const char* name);
    bool boolean(const char* name);

    // Nothing may be left.
    void end() const { require(object_.empty()); }

private:
    nlohmann::json& object_;
};

} // namespace zqm::protocol
