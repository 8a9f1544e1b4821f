#include "cli/command_line/value_types.h"
#include "cli/commands.h"
#include "cli/documents/completion.h"

namespace zqm::cli {
namespace {

constexpr const char* kBegin =
    R"(# Completes command lines of zqmspeech in fish. Made by zqmspeech completion fish.

function __zqmspeech_program
    string replace -r '^~' -- $HOME (commandline -opc)[1]
end

# A column of what the program prints with these arguments; the first with what else a line says.
function __zqmspeech_ask
    set -l program (__zqmspeech_program)
    if test $argv[1] = 1
        $program $argv[2..] 2>/dev/null | string replace -r '^(\S+)\s+(?:.*\t)?(.*)$' '$1\t$2'
    else
        $program $argv[2..] 2>/dev/null | awk -v column=$argv[1] '{ print $column }' | sort -u
    end
end

function __zqmspeech_has_no_command
    test (count (commandline -opc)) -eq 1
end

function __zqmspeech_command_is
    set -l words (commandline -opc)
    test (count $words) -gt 1; and test $words[2] = $argv[1]
end

complete -c zqmspeech -f
)";

std::string fishQuoted(std::string_view text) {
    return "'" + escaped(text, "\\'") + "'";
}

// The options of `complete` for a value of this type.
std::string valueOptions(const ValueType* type) {
    switch (type == nullptr ? ValueSource::Anything : type->source) {
    case ValueSource::Files:
        return " -r -F";
    case ValueSource::Asked:
        return " -x -a '(__zqmspeech_ask " + std::to_string(type->column) + " " + std::string(type->asked) +
               ")'";
    case ValueSource::Fixed: {
        std::string words;
        for (const std::string& value : type->values) {
            words.append(words.empty() ? "" : " ").append(value);
        }
        return " -x -a " + fishQuoted(words);
    }
    case ValueSource::Anything:
        break;
    }
    return " -x";
}

std::string optionLine(const std::string& condition, const OptionDescription& option) {
    std::string line = "complete -c zqmspeech -n " + fishQuoted(condition);
    for (const std::string& name : option.names) {
        const bool isLong = name.starts_with("--");
        line += (isLong ? " -l " : " -s ") + name.substr(isLong ? 2 : 1);
    }
    if (!option.type.empty()) {
        line += valueOptions(findValueType(option.type));
    }
    return line + " -d " + fishQuoted(option.summary) + "\n";
}

} // namespace

std::string fishCompletion(const std::vector<Command>& commands) {
    const std::string hasNoCommand = "__zqmspeech_has_no_command";
    std::string script = kBegin;
    for (const OptionDescription& option : programOptions()) {
        script += optionLine(hasNoCommand, option);
    }
    for (const Command& command : commands) {
        const std::string name(command.syntax.name);
        const std::string isCommand = "__zqmspeech_command_is " + name;
        script.append("\ncomplete -c zqmspeech -n ")
            .append(hasNoCommand)
            .append(" -a ")
            .append(name)
            .append(" -d ")
            .append(fishQuoted(command.syntax.summary))
            .append("\n");
        for (const OptionDescription& option : describeOptions(*command.newCommandLine())) {
            script += optionLine(isCommand, option);
        }
        const ValueType* words = typeOfWords(command.syntax.words);
        if (words != nullptr && words->source != ValueSource::Anything) {
            script += "complete -c zqmspeech -n " + fishQuoted(isCommand) + valueOptions(words) + "\n";
        }
    }
    return script;
}

} // namespace zqm::cli
