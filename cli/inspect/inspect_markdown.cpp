#include "cli/inspect/inspect_markdown.h"

#include "cli/command_line/message.h"
#include "cli/inspect/inspect_members.h"

#include <algorithm>
#include <string_view>

namespace zqm::cli {
namespace {

// Between more backquotes than stand together in it.
std::string code(std::string_view text) {
    const std::string line = oneLine(text);
    std::size_t longest = 0;
    std::size_t run = 0;
    for (const char character : line) {
        run = character == '`' ? run + 1 : 0;
        longest = std::max(longest, run);
    }
    const std::string quotes(longest + 1, '`');
    const char* blank = longest > 0 ? " " : "";
    return quotes + blank + line + blank + quotes;
}

} // namespace

std::string inspectionMarkdown(const InspectedLibrary& library) {
    std::string text = "# " + code(library.name) + "\n";
    if (library.revision) {
        text += "\nOf revision " + std::to_string(*library.revision) + " of the plugin interface.\n";
    }
    for (const host::ClassDescription& type : library.classes) {
        text += "\n## " + code(type.name) + "\n";
        if (!type.super.empty()) {
            text += "\nInherits " + code(type.super) + ".\n";
        }
        for (const MemberSection& section : membersOf(type)) {
            text += std::string("\n### ") + section.title + "\n\n";
            for (const MemberLine& member : section.members) {
                text += "- " + code(member.declaration);
                text += member.note.empty() ? "\n" : " (" + member.note + ")\n";
            }
        }
    }
    return text;
}

} // namespace zqm::cli
