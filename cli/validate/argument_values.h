// Values of the types that a plugin declares, to call its members with.

#pragma once

#include <zqmhost/zqmhost.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace zqm::cli {

// The same seed makes the same values. Files are named in the working folder only.
class ArgumentValues {
public:
    ArgumentValues(host::Runtime& runtime, std::uint64_t seed);

    // A text that the plugin itself told, as the name of something, which its members may know.
    void learn(std::string text);

    // What a program would pass. Never nil where the type has anything else.
    host::Value ordinary(const host::TypeDescription& type);
    // Nil, and what lies at the ends of the type: the smallest and the largest, the empty and the long, what
    // is no text in its encoding.
    std::vector<host::Value> extremes(const host::TypeDescription& type);

    // A number below that one, which isn't 0.
    std::size_t below(std::size_t end) { return static_cast<std::size_t>(random_() % end); }
    template <typename Element>
    const Element& oneOf(const std::vector<Element>& elements) {
        return elements[below(elements.size())];
    }

private:
    host::Value object(const std::string& className);
    host::Value array(const host::TypeDescription& type, std::size_t size);
    std::string text();

    host::Runtime* runtime_;
    std::mt19937_64 random_;
    std::vector<std::string> words_;
    std::string folder_;
};

} // namespace zqm::cli
