#include "cli/validate/checks/member_names.h"

#include <algorithm>
#include <map>
#include <string>
#include <string_view>

namespace zqm::cli {
namespace {

// Host code knows no case.
std::string lowered(std::string_view name) {
    std::string lower(name);
    std::ranges::transform(lower, lower.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return lower;
}

// Letters of other scripts are bytes beyond ASCII.
bool mayBeInName(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '_' ||
           static_cast<unsigned char>(character) >= 0x80;
}

bool isName(std::string_view name) {
    return !name.empty() && (name.front() < '0' || name.front() > '9') &&
           std::ranges::all_of(name, mayBeInName);
}

class NameCheck {
public:
    NameCheck(const host::ClassDescription& type, Findings& findings)
        : where_("class \"" + type.name + "\": "), findings_(&findings) {}

    void addMember(const std::string& kind, const std::string& name) {
        if (!isName(name)) {
            findings_->fail(where_ + "host code can't write the name of the " + kind + " \"" + name + '"');
        }
        const auto [other, isNew] = kinds_.try_emplace(lowered(name), kind);
        if (!isNew && other->second != kind) {
            findings_->fail(where_ + '"' + name + "\" is a " + other->second + " and a " + kind);
        }
    }

    void addParameters(const std::string& member, const std::vector<host::ParameterDescription>& parameters) {
        std::vector<std::string> names;
        for (const host::ParameterDescription& parameter : parameters) {
            const std::string name = lowered(parameter.name);
            if (std::ranges::find(names, name) != names.end()) {
                findings_->fail(where_ + '"' + member + "\" has two parameters \"" + parameter.name + '"');
            }
            names.push_back(name);
        }
    }

private:
    std::string where_;
    Findings* findings_;
    std::map<std::string, std::string> kinds_; // of members, by their lowered names
};

} // namespace

void checkMemberNames(const host::ClassDescription& type, Findings& findings) {
    NameCheck check(type, findings);
    for (const auto* methods : {&type.methods, &type.sharedMethods}) {
        for (const host::MethodDescription& method : *methods) {
            check.addMember("method", method.name);
            check.addParameters(method.name, method.parameters);
        }
    }
    for (const host::PropertyDescription& property : type.properties) {
        check.addMember("property", property.name);
        if (!property.isReadable) {
            findings.warn("class \"" + type.name + "\": property \"" + property.name +
                          "\" can be set, but not read");
        }
    }
    for (const host::EventDescription& event : type.events) {
        check.addMember("event", event.name);
        check.addParameters(event.name, event.parameters);
    }
    for (const host::ConstantDescription& constant : type.constants) {
        check.addMember("constant", constant.name);
    }
}

} // namespace zqm::cli
