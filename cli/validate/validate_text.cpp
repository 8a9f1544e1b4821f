#include "cli/validate/validate_text.h"

#include "cli/command_line/message.h"
#include "cli/terminal/colours.h"
#include "cli/text/wrapped_text.h"

#include <algorithm>
#include <sstream>
#include <string_view>

namespace zqm::cli {
namespace {

constexpr std::size_t kVerdictColumns = sizeof("warning") + 1;
constexpr Verdict kVerdicts[] = {Verdict::Pass, Verdict::Warning, Verdict::Fail, Verdict::Crash,
                                 Verdict::Skip};

std::size_t nameColumns() {
    std::size_t columns = 0;
    for (const Check& check : checks()) {
        columns = std::max(columns, check.name.size() + 2);
    }
    return columns;
}

std::string padded(std::string_view text, std::size_t columns) {
    return std::string(text) + std::string(columns - std::min(columns, text.size()), ' ');
}

std::string lineOf(Verdict verdict, std::string_view check, std::string_view text,
                   const ValidateLayout& layout) {
    const std::string_view name = nameOf(verdict);
    const std::string head = bold(name, layout.isColoured && verdict >= Verdict::Warning) +
                             std::string(kVerdictColumns - name.size(), ' ') + padded(check, nameColumns());
    const std::size_t indent = kVerdictColumns + std::max(nameColumns(), check.size());
    const std::string line = oneLine(text);
    if (!layout.columns || *layout.columns < indent * 2) {
        return head + line + '\n';
    }
    const std::string lines = wrapped(line, *layout.columns, indent);
    return head + lines.substr(std::min(indent, lines.size() - 1)); // nothing is indented by nothing
}

} // namespace

std::string resultText(const CheckResult& result, const ValidateLayout& layout) {
    std::string text;
    for (const Finding& finding : result.findings) {
        text += lineOf(finding.verdict, result.check, finding.text, layout);
    }
    if (result.findings.empty()) {
        text = lineOf(result.verdict, result.check, result.summary, layout);
    }
    std::istringstream output(result.output);
    for (std::string line; std::getline(output, line);) {
        text += std::string(kVerdictColumns, ' ') + "| " + oneLine(line) + '\n';
    }
    return text;
}

std::string summaryText(const Validation& validation) {
    std::string text;
    for (const Verdict verdict : kVerdicts) {
        const auto count = std::ranges::count(validation.results, verdict, &CheckResult::verdict);
        if (count > 0) {
            text += (text.empty() ? "" : ", ") + std::to_string(count) + ' ' + nameOf(verdict);
        }
    }
    return oneLine(validation.library) + ", seed " + std::to_string(validation.seed) + ": " + text + '\n';
}

std::string checkList() {
    std::string text;
    for (const Check& check : checks()) {
        text += std::string(check.name) + '\t' + std::string(check.summary) + '\n';
    }
    return text;
}

} // namespace zqm::cli
