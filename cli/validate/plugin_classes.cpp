#include "cli/validate/plugin_classes.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace zqm::cli {

bool sameName(std::string_view one, std::string_view other) {
    return std::ranges::equal(one, other, [](unsigned char left, unsigned char right) {
        return std::tolower(left) == std::tolower(right);
    });
}

const host::ClassDescription* PluginClasses::find(std::string_view name) const {
    const auto found = std::ranges::find_if(
        classes_, [&](const host::ClassDescription& one) { return sameName(one.name, name); });
    return found == classes_.end() ? nullptr : &*found;
}

std::vector<const host::ClassDescription*> PluginClasses::lineOf(const host::ClassDescription& type) const {
    std::vector<const host::ClassDescription*> line;
    const host::ClassDescription* one = &type;
    while (one != nullptr && std::ranges::find(line, one) == line.end()) {
        line.push_back(one);
        one = one->super.empty() ? nullptr : find(one->super);
    }
    return line;
}

PluginClasses::Methods PluginClasses::constructorsOf(const host::ClassDescription& type) const {
    Methods constructors;
    for (const host::ClassDescription* one : lineOf(type)) {
        std::ranges::copy_if(one->methods, std::back_inserter(constructors),
                             [](const host::MethodDescription& method) {
                                 return sameName(method.name, "Constructor") && method.isCallable;
                             });
    }
    return constructors;
}

} // namespace zqm::cli
