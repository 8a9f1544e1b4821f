#include "cli/command_line/help.h"

#include "cli/command_line/exit_codes.h"
#include "cli/terminal/terminal_line.h"
#include "cli/text/display_width.h"
#include "cli/text/wrapped_text.h"

#include <algorithm>

#include <unistd.h>

namespace zqm::cli {
namespace {

constexpr std::size_t kWidest = 100;
constexpr std::size_t kNarrowest = 66; // that has room for names on the left
constexpr std::size_t kIndent = 2;
constexpr std::size_t kDeepIndent = 6;
constexpr std::size_t kLongestName = 30; // a longer one has a line of its own

} // namespace

std::size_t helpColumns() {
    return isatty(STDOUT_FILENO) != 0 ? std::min(lineColumns(STDOUT_FILENO), kWidest) : kWidest;
}

std::string nameList(const std::vector<std::pair<std::string, std::string>>& entries, std::size_t columns) {
    std::size_t left = 0;
    for (const auto& [name, meaning] : entries) {
        left = std::max(left, std::min(columnsOf(name), kLongestName));
    }
    const bool isNarrow = columns < kNarrowest && left > kDeepIndent;
    const std::size_t indent = isNarrow ? kDeepIndent : kIndent + left + 2;
    std::string text;
    for (const auto& [name, meaning] : entries) {
        std::string line(kIndent, ' ');
        line += name;
        std::string explanation = wrapped(meaning, columns, indent);
        if (isNarrow || columnsOf(name) > left) {
            text.append(line).append("\n").append(explanation);
        } else {
            line.append(indent - columnsOf(line), ' ');
            text.append(line).append(explanation.substr(indent));
        }
    }
    return text;
}

std::vector<std::pair<std::string, std::string>> exitCodes(const Syntax& syntax) {
    std::vector<std::pair<std::string, std::string>> codes{
        {std::to_string(kDone), std::string(syntax.done)},
        {std::to_string(kFailed), std::string(syntax.failed)},
        {std::to_string(kWrongUsage), "the command line is wrong"}};
    if (!syntax.fruitless.empty()) {
        codes.emplace_back(std::to_string(kFruitless), std::string(syntax.fruitless));
    }
    codes.emplace_back(std::to_string(kSignalled) + "+N", "signal N ended it (130 for Ctrl-C)");
    return codes;
}

std::string nameOf(const OptionDescription& option) {
    std::string name;
    for (const std::string& each : option.names) {
        name.append(name.empty() ? "" : ",").append(each);
    }
    return option.type.empty() ? name : name + " " + option.type;
}

std::string usageOf(const Syntax& syntax) {
    std::string usage = std::string(syntax.name) + " [OPTIONS]";
    return syntax.words.empty() ? usage : usage.append(" ").append(syntax.words);
}

std::string helpText(const Syntax& syntax, const std::vector<OptionDescription>& options,
                     std::size_t columns) {
    std::vector<std::pair<std::string, std::string>> entries;
    entries.reserve(options.size());
    for (const OptionDescription& option : options) {
        entries.emplace_back(nameOf(option), option.range.empty()
                                                 ? option.summary
                                                 : option.summary + " (" + option.range + ")");
    }
    std::string text = wrapped(std::string(syntax.summary) + ".", columns) +
                       wrapped("Usage: zqmspeech " + usageOf(syntax), columns) + "\nOptions:\n" +
                       nameList(entries, columns);
    for (const std::string_view notes : {syntax.wordNotes, syntax.notes}) {
        if (!notes.empty()) {
            text += "\n" + wrapped(notes, columns);
        }
    }
    if (!syntax.list.empty()) {
        text.append("\n").append(syntax.listTitle).append(":\n");
        entries.clear();
        for (const auto& [line, meaning] : syntax.list) {
            entries.emplace_back(line, meaning);
        }
        text += nameList(entries, columns);
    }
    return text + "\nExit codes:\n" + nameList(exitCodes(syntax), columns);
}

} // namespace zqm::cli
