// Values of the types that a plugin declares, to call its members with.

#pragma once

#include "cli/validate/plugin_classes.h"

#include <zqmhost/zqmhost.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::cli {

// The same seed makes the same values. Files are named in one folder only.
class ArgumentValues {
public:
    // The classes must outlive it. The folder is an absolute path.
    ArgumentValues(host::Runtime& runtime, const PluginClasses& classes, std::uint64_t seed,
                   std::string folder);

    // A text that the plugin itself told, as the name of something, which its members may know. One that
    // could be the path of a file outside of the folder is not taken: a member may delete what it is given.
    void learn(std::string text);

    // What a program would pass. Nil only where there is nothing else: an object has been made by a
    // "Constructor" of its class, if it declares one.
    host::Value ordinary(const host::TypeDescription& type);
    std::vector<host::Value> ordinaryFor(const host::MethodDescription& method);
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
    host::Object constructed(const host::ClassDescription& type);
    host::Object constructedBy(const host::MethodDescription& constructor,
                               const host::ClassDescription& type);
    host::Value array(const host::TypeDescription& type, std::size_t size);
    std::string text();
    std::string fileName();
    host::FolderItem folderInside();
    bool mayBeElsewhere(std::string_view path) const;

    host::Runtime* runtime_;
    const PluginClasses* classes_;
    std::mt19937_64 random_;
    std::vector<std::string> words_;
    std::string folder_;
    int depth_ = 0; // of objects that are made for the "Constructor" of another
};

} // namespace zqm::cli
