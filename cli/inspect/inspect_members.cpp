#include "cli/inspect/inspect_members.h"

#include "cli/command_line/message.h"

#include <utility>

namespace zqm::cli {
namespace {

std::string noteOf(const host::MethodDescription& method) {
    return method.isCallable ? "" : "not to be called";
}

std::string noteOf(const host::PropertyDescription& property) {
    if (!property.isWritable) {
        return "read-only";
    }
    return property.isReadable ? "" : "write-only";
}

std::string noteOf(const host::EventDescription& /*event*/) {
    return "";
}

std::string noteOf(const host::ConstantDescription& /*constant*/) {
    return "";
}

template <typename Member>
void add(std::vector<MemberSection>& sections, const char* title, const std::vector<Member>& members) {
    std::vector<MemberLine> lines;
    lines.reserve(members.size());
    for (const Member& member : members) {
        lines.push_back({oneLine(declaration(member)), noteOf(member)});
    }
    if (!lines.empty()) {
        sections.push_back({title, std::move(lines)});
    }
}

} // namespace

std::vector<MemberSection> membersOf(const host::ClassDescription& type) {
    std::vector<MemberSection> sections;
    add(sections, "Methods", type.methods);
    add(sections, "Shared methods", type.sharedMethods);
    add(sections, "Properties", type.properties);
    add(sections, "Events", type.events);
    add(sections, "Constants", type.constants);
    return sections;
}

} // namespace zqm::cli
