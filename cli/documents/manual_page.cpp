#include "cli/documents/manual_page.h"

#include "cli/command_line/help.h"
#include "cli/commands.h"
#include "cli/documents/roff.h"

namespace zqm::cli {
namespace {

constexpr const char* kDescription =
    "zqmspeech speaks texts and listens for spoken commands by the speech services of the platform: those of "
    "macOS, "
    "or on Linux voices and a recognizer of its own. It needs no network.\n"
    "\n"
    "Every command tells its options with --help. Errors are one line on standard error each.";

struct Example {
    const char* commandLine;
    const char* meaning;
};
constexpr Example kExamples[] = {
    {"zqmspeech say Words are joined with blanks", "Speaks aloud."},
    {"zqmspeech say -f letter.txt -o letter.flac", "Writes a sound file of a text."},
    {"zqmspeech say -v gmw/de --rate 150 Guten Tag", "Speaks German, slowly."},
    {"zqmspeech listen --once --timeout 10 yes no", "Waits for an answer, and prints it."},
    {"zqmspeech voices --language en", "Lists the voices for all kinds of English."},
    {"zqmspeech voice --sample gmw/en-GB-scotland", "Shows a voice, and lets it speak."},
};

struct Variable {
    const char* name;
    const char* meaning;
};
constexpr Variable kVariables[] = {
    {"ZQMSPEECH_FALLBACK",
     "The sound file that zqmspeech say writes where no sound can be played, without --fallback and -o."},
    {"TMPDIR", "Where temporary files go; without it, /tmp."},
    {"NO_COLOR", "If it is set and not empty, nothing is coloured. Only terminals get colours at all."},
    {"LANG, LC_ALL, LC_MESSAGES",
     "The language of the voice that speaks when none is named. Texts are UTF-8 whatever they say."},
    {"PULSE_SERVER", "On Linux, the sound server that plays and records."},
    {"TERM", "On a dumb terminal, no line shows the progress."},
};

std::string optionItem(const OptionDescription& option) {
    std::string names;
    for (const std::string& name : option.names) {
        names += (names.empty() ? "" : ", ") + roff::bold(name);
    }
    if (!option.type.empty()) {
        names += " " + roff::italic(option.type);
    }
    return roff::item(names, option.summary + (option.range.empty() ? "." : " (" + option.range + ")."));
}

// [OPTIONS] [TEXT...] with what stands for something else in italics.
std::string synopsisOf(const Syntax& syntax) {
    std::string line =
        roff::bold("zqmspeech") + " " + roff::bold(syntax.name) + " [" + roff::italic("OPTIONS") + "]";
    if (!syntax.words.empty()) {
        line += " " + roff::escaped(syntax.words);
    }
    return line + "\n";
}

std::string commandSection(const Command& command) {
    const Syntax& syntax = command.syntax;
    std::string text = roff::subheading(std::string(syntax.name)) + synopsisOf(syntax) +
                       roff::paragraphs(std::string(syntax.summary) + ".");
    for (const OptionDescription& option : describeOptions(*command.newCommandLine())) {
        text += optionItem(option);
    }
    for (const std::string_view notes : {syntax.wordNotes, syntax.notes}) {
        if (!notes.empty()) {
            text += roff::paragraphs(notes);
        }
    }
    if (!syntax.list.empty()) {
        text += roff::paragraphs(std::string(syntax.listTitle) + ":");
        for (const auto& [line, meaning] : syntax.list) {
            text += roff::item(roff::escaped(line), std::string(meaning) + ".");
        }
    }
    text += roff::paragraphs("It exits with:");
    for (const auto& [code, meaning] : exitCodes(syntax)) {
        text += roff::item(roff::bold(code), meaning + ".");
    }
    return text;
}

} // namespace

std::string manualPage(const std::vector<Command>& commands, std::string_view version) {
    std::string page = roff::title("ZQMSPEECH", "1", "zqmspeech " + std::string(version), "User Commands") +
                       roff::heading("NAME") + "zqmspeech \\- " +
                       roff::escaped("speaks texts and listens for spoken commands") + "\n" +
                       roff::heading("SYNOPSIS");
    for (const Command& command : commands) {
        page += synopsisOf(command.syntax) + roff::kLineBreak;
    }
    page += roff::bold("zqmspeech") + " " + roff::bold("--help") + " | " + roff::bold("--version") + "\n";
    page += roff::heading("DESCRIPTION") + roff::paragraphs(kDescription);
    page += roff::heading("OPTIONS");
    for (const OptionDescription& option : programOptions()) {
        page += optionItem(option);
    }
    page += roff::heading("COMMANDS");
    for (const Command& command : commands) {
        page += commandSection(command);
    }
    page += roff::heading("ENVIRONMENT");
    for (const auto& [name, meaning] : kVariables) {
        page += roff::item(roff::bold(name), meaning);
    }
    page += roff::heading("EXAMPLES");
    for (const auto& [commandLine, meaning] : kExamples) {
        page += roff::item(roff::bold(commandLine), meaning);
    }
    return page;
}

} // namespace zqm::cli
