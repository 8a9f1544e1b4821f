#include "cli/command_line/value_types.h"
#include "cli/commands.h"
#include "cli/documents/completion.h"

namespace zqm::cli {
namespace {

constexpr const char* kBegin = R"sh(#compdef zqmspeech
# Completes command lines of zqmspeech in zsh. Made by zqmspeech completion zsh.

# A column of what the program prints with these arguments; the first with what else a line says.
_zqmspeech_ask() {
    local -aU values
    local line rest
    for line in ${(f)"$(_call_program values ${(q)program} ${@:2} 2>/dev/null)"}; do
        if (( $1 == 1 )); then
            rest=${line#*[[:space:]]}
            values+=("${${line%%[[:space:]]*}//:/\\:}:${${rest##*$'\t'}## #}")
        else
            values+=("${${=line}[$1]}")
        fi
    done
    _describe -t values value values
}

_zqmspeech() {
    local curcontext=$curcontext program=${~words[1]} state line
    local -a commands
    commands=(
)sh";
constexpr const char* kAfterCommands = R"sh(    )
    _arguments -C \
)sh";
constexpr const char* kAfterOptions = R"sh(        '1:command:->command' \
        '*::argument:->argument' && return
    case $state in
    command)
        _describe -t commands command commands
        ;;
    argument)
        case $line[1] in
)sh";
constexpr const char* kEnd = R"sh(        esac
        ;;
    esac
}

_zqmspeech "$@"
)sh";

// What completes a value of this type.
std::string actionFor(const ValueType* type) {
    switch (type == nullptr ? ValueSource::Anything : type->source) {
    case ValueSource::Files:
        return "_files";
    case ValueSource::Asked:
        return "{_zqmspeech_ask " + std::to_string(type->column) + " " + std::string(type->asked) + "}";
    case ValueSource::Fixed: {
        std::string words = "(";
        for (const std::string& value : type->values) {
            words.append(words.size() == 1 ? "" : " ").append(value);
        }
        return words + ")";
    }
    case ValueSource::Anything:
        break;
    }
    return " ";
}

// A line for each name; the names exclude each other.
std::string specificationOf(const OptionDescription& option) {
    std::string all;
    for (const std::string& name : option.names) {
        all.append(all.empty() ? "" : " ").append(name);
    }
    const bool endsAll = option.names.back() == "--help" || option.names.back() == "--version";
    std::string lines;
    for (const std::string& name : option.names) {
        std::string line = endsAll ? "(- *)" : "(" + all + ")";
        line += name;
        if (!option.type.empty()) {
            line += name.starts_with("--") ? "=" : "+";
        }
        line += "[" + escaped(option.summary, "[]\\") + "]";
        if (!option.type.empty()) {
            line += ":" + option.type + ":" + actionFor(findValueType(option.type));
        }
        lines += quoted(line) + " \\\n";
    }
    return lines;
}

std::string specificationsOf(const std::vector<OptionDescription>& options, const std::string& indent) {
    std::string lines;
    for (const OptionDescription& option : options) {
        const std::string specification = specificationOf(option);
        for (std::size_t begin = 0; begin < specification.size();) {
            const std::size_t end = specification.find('\n', begin) + 1;
            lines.append(indent).append(specification, begin, end - begin);
            begin = end;
        }
    }
    return lines;
}

std::string argumentCase(const Command& command) {
    const ValueType* words = typeOfWords(command.syntax.words);
    return "        " + std::string(command.syntax.name) + ")\n            _arguments -s -S \\\n" +
           specificationsOf(describeOptions(*command.newCommandLine()), "                ") +
           "                " +
           (words == nullptr
                ? "&& return"
                : quoted("*:" + std::string(words->name) + ":" + actionFor(words)) + " && return") +
           "\n            ;;\n";
}

} // namespace

std::string zshCompletion(const std::vector<Command>& commands) {
    std::string script = kBegin;
    for (const Command& command : commands) {
        script += "        " +
                  quoted(std::string(command.syntax.name) + ":" + escaped(command.syntax.summary, ":\\")) +
                  "\n";
    }
    script += kAfterCommands + specificationsOf(programOptions(), "        ") + kAfterOptions;
    for (const Command& command : commands) {
        script += argumentCase(command);
    }
    return script + kEnd;
}

} // namespace zqm::cli
