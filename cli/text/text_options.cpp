#include "cli/text/text_options.h"

#include "cli/command_line/failure.h"

namespace zqm::cli {

void addTextOptions(CLI::App& app, TextOptions& options, const std::string& voiceSummary) {
    app.add_option("-f,--file", options.input, "Reads the text from this file; - is standard input")
        ->check(notEmpty())
        ->type_name("FILE");
    app.add_option("-v,--voice", options.voice, voiceSummary)->check(notEmpty())->type_name("VOICE");
}

void takeText(TextOptions& options, const CLI::App& app, const Words& words) {
    if (!words.all.empty() && app.count("--file") > 0) {
        throw UsageError("a text and --file can't both be given");
    }
    const bool isStandardInput = words.all.size() == 1 && words.all.front() == "-" && !words.hasDashes;
    if (!isStandardInput) {
        options.text = joined(words.all);
    }
}

} // namespace zqm::cli
