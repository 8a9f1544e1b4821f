#include "cli/command_line/value_types.h"
#include "cli/commands.h"
#include "cli/documents/completion.h"

namespace zqm::cli {
namespace {

// The words are as the shell cut them: "--voice=gmw/de" is three.
constexpr const char* kBegin =
    R"sh(# Completes command lines of zqmspeech in bash. Made by zqmspeech completion bash.

_zqmspeech_take() {
    local line
    while IFS= read -r line; do
        COMPREPLY+=("$line")
    done
}

_zqmspeech_words() {
    _zqmspeech_take < <(compgen -W "$1" -- "$current")
}

_zqmspeech_files() {
    compopt -o filenames 2>/dev/null
    _zqmspeech_take < <(compgen -f -- "$current")
}

# A column of what the program prints with these arguments.
_zqmspeech_ask() {
    local program=${COMP_WORDS[0]/#\~/$HOME}
    _zqmspeech_words "$("$program" "${@:2}" 2>/dev/null </dev/null | awk -v "column=$1" '{ print $column }' | sort -u)"
}

_zqmspeech() {
    local command=${COMP_WORDS[1]} current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local word words_only=
    COMPREPLY=()
    if [[ $current == = ]]; then
        current=
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    for word in "${COMP_WORDS[@]:0:COMP_CWORD}"; do
        if [[ $word == -- ]]; then
            words_only=yes
        fi
    done
    if ((COMP_CWORD > 1)) && [[ -z $words_only ]]; then
        case $command:$previous in
)sh";
constexpr const char* kAfterValues = R"sh(        esac
    fi
    case $((COMP_CWORD > 1)):$command in
)sh";
constexpr const char* kEnd = R"sh(    esac
}

complete -F _zqmspeech zqmspeech
)sh";

// What completes a value of this type; nothing for one that nobody knows.
std::string callFor(const ValueType* type) {
    switch (type == nullptr ? ValueSource::Anything : type->source) {
    case ValueSource::Files:
        return "_zqmspeech_files";
    case ValueSource::Asked:
        return "_zqmspeech_ask " + std::to_string(type->column) + " " + std::string(type->asked);
    case ValueSource::Fixed: {
        std::string words;
        for (const std::string& value : type->values) {
            words.append(words.empty() ? "" : " ").append(value);
        }
        return "_zqmspeech_words " + quoted(words);
    }
    case ValueSource::Anything:
        break;
    }
    return ":";
}

std::string namesOf(const std::vector<OptionDescription>& options) {
    std::string names;
    for (const OptionDescription& option : options) {
        for (const std::string& name : option.names) {
            names.append(names.empty() ? "" : " ").append(name);
        }
    }
    return names;
}

std::string valueCases(const Command& command) {
    std::string cases;
    for (const OptionDescription& option : describeOptions(*command.newCommandLine())) {
        if (option.type.empty()) {
            continue;
        }
        std::string patterns;
        for (const std::string& name : option.names) {
            patterns.append(patterns.empty() ? "" : " | ")
                .append(command.syntax.name)
                .append(":")
                .append(name);
        }
        cases += "        " + patterns + ")\n            " + callFor(findValueType(option.type)) +
                 "\n            return\n            ;;\n";
    }
    return cases;
}

std::string wordCase(const Command& command) {
    return "    1:" + std::string(command.syntax.name) +
           ")\n        if [[ -z $words_only && $current == -* ]]; then\n" + "            _zqmspeech_words " +
           quoted(namesOf(describeOptions(*command.newCommandLine()))) + "\n        else\n            " +
           callFor(typeOfWords(command.syntax.words)) + "\n        fi\n        ;;\n";
}

} // namespace

std::string bashCompletion(const std::vector<Command>& commands) {
    std::string script = kBegin;
    std::string first = namesOf(programOptions());
    for (const Command& command : commands) {
        script += valueCases(command);
        first.append(" ").append(command.syntax.name);
    }
    script += kAfterValues;
    for (const Command& command : commands) {
        script += wordCase(command);
    }
    return script + "    0:*)\n        _zqmspeech_words " + quoted(first) + "\n        ;;\n" + kEnd;
}

} // namespace zqm::cli
