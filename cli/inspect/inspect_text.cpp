#include "cli/inspect/inspect_text.h"

#include "cli/command_line/message.h"
#include "cli/inspect/inspect_members.h"

#include <string_view>
#include <vector>

namespace zqm::cli {
namespace {

constexpr std::string_view kMemberIndent = "    ";
constexpr std::string_view kContinuedIndent = "        ";

// Whether a line may end behind this character: in front of a parameter, a result or a note.
bool mayEndBehind(std::string_view line, std::size_t index) {
    const char before = index > 0 ? line[index - 1] : '\0';
    const char after = index + 1 < line.size() ? line[index + 1] : '\0';
    return (line[index] == '(' && before != ' ' && after != ')') ||
           (line[index] == ' ' && (before == ',' || before == ')' || after == '('));
}

std::vector<std::string_view> partsOf(std::string_view line) {
    std::vector<std::string_view> parts;
    std::size_t begin = 0;
    for (std::size_t index = 0; index < line.size(); ++index) {
        if (mayEndBehind(line, index)) {
            parts.push_back(line.substr(begin, index + 1 - begin));
            begin = index + 1;
        }
    }
    parts.push_back(line.substr(begin));
    return parts;
}

// Broken only where it would be longer than the columns.
void add(std::string& text, const MemberLine& member, std::optional<std::size_t> columns) {
    const std::string whole = member.declaration + (member.note.empty() ? "" : " (" + member.note + ")");
    std::string line(kMemberIndent);
    for (const std::string_view part : partsOf(whole)) {
        const std::size_t visible = part.ends_with(' ') ? part.size() - 1 : part.size();
        if (columns && line.size() > kMemberIndent.size() && line.size() + visible > *columns) {
            text.append(line, 0, line.find_last_not_of(' ') + 1).append("\n");
            line = kContinuedIndent;
        }
        line += part;
    }
    text += line + '\n';
}

} // namespace

std::string inspectionText(const InspectedLibrary& library, std::optional<std::size_t> columns) {
    std::string text = oneLine(library.name) + '\n';
    if (library.revision) {
        text += "  revision " + std::to_string(*library.revision) + " of the plugin interface\n";
    }
    for (const host::ClassDescription& type : library.classes) {
        text += "\nClass " + oneLine(type.name) + '\n';
        if (!type.super.empty()) {
            text += "  inherits " + oneLine(type.super) + '\n';
        }
        for (const MemberSection& section : membersOf(type)) {
            text += std::string("\n  ") + section.title + '\n';
            for (const MemberLine& member : section.members) {
                add(text, member, columns);
            }
        }
    }
    return text;
}

} // namespace zqm::cli
