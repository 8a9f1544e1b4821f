#include "cli/command_line/command_line.h"

#include "cli/command_line/closest.h"
#include "cli/command_line/failure.h"
#include "cli/command_line/help.h"
#include "cli/command_line/option_description.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string_view>
#include <utility>

namespace zqm::cli {
namespace {

class HelpFormatter : public CLI::FormatterBase {
public:
    explicit HelpFormatter(const Syntax& syntax) : syntax_(syntax) {}

    std::string make_help(const CLI::App* app, std::string /*name*/,
                          CLI::AppFormatMode /*mode*/) const override {
        return helpText(syntax_, describeOptions(*app), helpColumns());
    }

private:
    const Syntax& syntax_;
};

// What may be meant by an option that there is not.
std::string hintFor(const std::string& unknown, const CLI::App& app, const Syntax& syntax) {
    std::vector<std::string> names;
    for (const OptionDescription& option : describeOptions(app)) {
        names.insert(names.end(), option.names.begin(), option.names.end());
    }
    const std::string near = nearest(unknown.substr(0, unknown.find('=')), names);
    std::string hint = near.empty() ? "" : "near it: " + near;
    if (!syntax.word.empty()) {
        hint.append(hint.empty() ? "" : "; ").append("a ").append(syntax.word);
        hint += " that begins with - goes after --";
    }
    return hint.empty() ? "" : " (" + hint + ")";
}

// That an option was given twice, or last and without its value.
std::string complaintOf(const CLI::ArgumentMismatch& error, const CLI::App& app) {
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_items_expected_max() == 1 && option->count() > 1) {
            return option->get_name() + " can't be given twice, as " + option->results()[0] + " and as " +
                   option->results()[1];
        }
        if (std::string_view(error.what()).starts_with(option->get_name() + ":")) {
            const std::string type = option->get_type_name();
            return option->get_name() + ": its " + type.substr(0, type.find(':')) + " is missing";
        }
    }
    return error.what();
}

// The parser takes the = of "-o=FILE" for a part of the value.
void requireNoShortEqualSign(const std::string& argument, const CLI::App& app) {
    constexpr std::size_t kShortName = 2;
    const CLI::Option* const option =
        argument.size() > kShortName && argument[0] == '-' && argument[kShortName] == '='
            ? app.get_option_no_throw(argument.substr(0, kShortName))
            : nullptr;
    if (option != nullptr) {
        throw UsageError(argument + " has an = that belongs to a long name: " + option->get_name() +
                         argument.substr(kShortName));
    }
}

// The parser takes the argument behind "--output=" for the value.
void requireValueAfterEqualSign(const std::string& argument, const CLI::App& app) {
    const std::size_t equalSign = argument.find('=');
    const CLI::Option* const option = argument.starts_with("--") && equalSign + 1 == argument.size()
                                          ? app.get_option_no_throw(argument.substr(0, equalSign))
                                          : nullptr;
    if (option != nullptr) {
        throw UsageError(option->get_name() + ": it is empty");
    }
}

} // namespace

std::unique_ptr<CLI::App> newCommandLine(const Syntax& syntax) {
    auto app = std::make_unique<CLI::App>();
    app->formatter(std::make_shared<HelpFormatter>(syntax));
    app->set_help_flag("-h,--help", "Prints this help");
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

CLI::Validator oneOf(std::vector<std::string> values) {
    std::string list;
    for (const std::string& value : values) {
        list.append(list.empty() ? "" : (&value == &values.back() ? " or " : ", ")).append(value);
    }
    return {[values = std::move(values), list](const std::string& argument) {
                return std::ranges::find(values, argument) != values.end() ? ""
                                                                           : argument + " is not " + list;
            },
            list};
}

// The parser leaves words alone that it doesn't know; as arguments it would take "[a,b]" and "{}" for lists.
std::variant<Words, std::string> readOptions(CLI::App& app, const Syntax& syntax,
                                             std::span<const char* const> arguments) {
    const auto dashes = std::ranges::find(arguments, std::string_view("--"));
    const auto optionCount = static_cast<std::size_t>(dashes - arguments.begin());
    const std::span<const char* const> afterDashes =
        arguments.subspan(std::min(optionCount + 1, arguments.size()));
    std::vector<std::string> toParse(arguments.begin(), dashes);
    for (const std::string& argument : toParse) {
        requireNoShortEqualSign(argument, app);
        requireValueAfterEqualSign(argument, app);
    }
    std::ranges::reverse(toParse); // as the parser wants them
    try {
        app.parse(std::move(toParse));
    } catch (const CLI::CallForHelp&) {
        return app.help();
    } catch (const CLI::ArgumentMismatch& error) {
        throw UsageError(complaintOf(error, app));
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what());
    }

    Words words{app.remaining(), !afterDashes.empty()};
    for (const std::string& unknown : words.all) {
        if (unknown.size() > 1 && unknown.front() == '-') {
            throw UsageError(unknown + " is not an option" + hintFor(unknown, app, syntax));
        }
    }
    words.all.insert(words.all.end(), afterDashes.begin(), afterDashes.end());
    return words;
}

std::optional<std::string> joined(const std::vector<std::string>& words) {
    if (words.empty()) {
        return std::nullopt;
    }
    std::string text = words.front();
    for (const std::string& word : std::span(words).subspan(1)) {
        text.append(" ").append(word);
    }
    return text;
}

void requireNoWords(const Words& words, const Syntax& syntax) {
    if (!words.all.empty()) {
        const std::string name(syntax.name);
        throw UsageError(name + " takes options only, not \"" + words.all.front() + "\"; zqmspeech " + name +
                         " --help lists them");
    }
}

} // namespace zqm::cli
