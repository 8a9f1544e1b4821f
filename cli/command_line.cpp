#include "cli/command_line.h"

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
    explicit UsageFormatter(std::string usage) : usage_(std::move(usage)) {}

    std::string make_usage(const CLI::App* /*app*/, std::string /*name*/) const override {
        return "Usage: zqmspeech " + usage_ + "\n";
    }

private:
    std::string usage_;
};

} // namespace

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
std::variant<Words, std::string> readOptions(CLI::App& app, const std::string& usage, const std::string& word,
                                             std::span<const char* const> arguments) {
    app.formatter(std::make_shared<UsageFormatter>(usage));
    app.allow_extras();
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
            throw UsageError(std::string(unknown)
                                 .append(" is not an option (a ")
                                 .append(word)
                                 .append(" that begins with - goes after --)"));
        }
    }
    words.all.insert(words.all.end(), afterDashes.begin(), afterDashes.end());
    return words;
}

} // namespace zqm::cli
