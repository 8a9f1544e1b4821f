#include "cli/command_line.h"

#include "cli/exit_codes.h"
#include "cli/failure.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string_view>
#include <utility>

namespace zqm::cli {
namespace {

class UsageFormatter : public CLI::Formatter {
public:
    explicit UsageFormatter(const Syntax& syntax)
        : usage_("Usage: zqmspeech " + std::string(syntax.name) + " [OPTIONS]") {
        if (!syntax.words.empty()) {
            usage_.append(" ").append(syntax.words);
        }
    }

    std::string make_usage(const CLI::App* /*app*/, std::string /*name*/) const override {
        return usage_ + "\n";
    }

private:
    std::string usage_;
};

std::string footer(const Syntax& syntax) {
    std::string text(syntax.notes);
    text += text.empty() ? "Exit codes:" : "\n\nExit codes:";
    const auto add = [&text](int code, std::string_view meaning) {
        text.append("\n  ").append(std::to_string(code)).append("      ").append(meaning);
    };
    add(kDone, syntax.done);
    add(kFailed, syntax.failed);
    add(kWrongUsage, "the command line is wrong");
    if (!syntax.fruitless.empty()) {
        add(kFruitless, syntax.fruitless);
    }
    return text + "\n  128+N  signal N ended it (130 for Ctrl-C)";
}

} // namespace

std::unique_ptr<CLI::App> newCommandLine(const Syntax& syntax) {
    auto app = std::make_unique<CLI::App>(std::string(syntax.summary) + ".");
    app->formatter(std::make_shared<UsageFormatter>(syntax));
    app->footer(footer(syntax));
    app->allow_extras();
    return app;
}

CLI::Validator numberFrom(double least, double most) {
    const std::string range = CLI::detail::to_string(least) + " to " + CLI::detail::to_string(most);
    return {[least, most, range](const std::string& argument) -> std::string {
                double value = 0;
                const bool isDecimal = argument.find_first_of("xX") == std::string::npos;
                const bool isNumber =
                    isDecimal && CLI::detail::lexical_cast(argument, value) && std::isfinite(value);
                return isNumber && value >= least && value <= most
                           ? ""
                           : argument + " is not a number from " + range;
            },
            range};
}

CLI::Validator notEmpty() {
    return {[](const std::string& argument) { return std::string(argument.empty() ? "it is empty" : ""); },
            ""};
}

// The parser takes "--flag=3" for the flag, which has the value "true" without any.
CLI::Validator noValue() {
    return {[](const std::string& argument) {
                return argument == "true" ? "" : "it takes no value, and " + argument + " was given";
            },
            ""};
}

// The parser leaves words alone that it doesn't know; as arguments it would take "[a,b]" and "{}" for lists.
std::variant<Words, std::string> readOptions(CLI::App& app, const Syntax& syntax,
                                             std::span<const char* const> arguments) {
    const auto dashes = std::ranges::find(arguments, std::string_view("--"));
    const auto optionCount = static_cast<std::size_t>(dashes - arguments.begin());
    const std::span<const char* const> afterDashes =
        arguments.subspan(std::min(optionCount + 1, arguments.size()));
    std::vector<std::string> toParse(arguments.begin(), dashes);
    std::ranges::reverse(toParse); // as the parser wants them
    try {
        app.parse(std::move(toParse));
    } catch (const CLI::CallForHelp&) {
        return app.help();
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what());
    }

    Words words{app.remaining(), !afterDashes.empty()};
    for (const std::string& unknown : words.all) {
        if (unknown.size() > 1 && unknown.front() == '-') {
            throw UsageError(unknown + " is not an option" +
                             (syntax.word.empty() ? ""
                                                  : " (a " + std::string(syntax.word) +
                                                        " that begins with - goes after --)"));
        }
    }
    words.all.insert(words.all.end(), afterDashes.begin(), afterDashes.end());
    return words;
}

void requireNoWords(const Words& words, const Syntax& syntax) {
    if (!words.all.empty()) {
        throw UsageError(std::string(syntax.name) + " takes no " + words.all.front() + "; zqmspeech " +
                         std::string(syntax.name) + " --help tells more");
    }
}

} // namespace zqm::cli
