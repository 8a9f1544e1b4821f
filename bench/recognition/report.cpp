#include "bench/recognition/report.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <iomanip>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace zqm::recognition {

namespace {

constexpr double kMillisecondsPerSecond = 1000;
constexpr double kPercent = 100;

struct Sums {
    std::size_t commands = 0;
    std::size_t right = 0;
    std::size_t wrong = 0;
    std::size_t missed = 0;
    std::size_t others = 0;
    std::size_t falseAccepts = 0;
    std::vector<double> delays = {}; // of what was right
    double seconds = 0;
    double processorSeconds = 0;
};

Sums sumsOf(const std::vector<Outcome>& outcomes) {
    Sums sums;
    for (const Outcome& outcome : outcomes) {
        sums.commands += outcome.isCommand() ? 1 : 0;
        sums.right += outcome.isRight() ? 1 : 0;
        sums.wrong += outcome.isWrong() ? 1 : 0;
        sums.missed += outcome.isMissed() ? 1 : 0;
        sums.others += outcome.isCommand() ? 0 : 1;
        sums.falseAccepts += outcome.isFalseAccept() ? 1 : 0;
        if (outcome.isRight() && outcome.delay) {
            sums.delays.push_back(*outcome.delay);
        }
        sums.seconds += outcome.seconds;
        sums.processorSeconds += outcome.processorSeconds;
    }
    return sums;
}

std::optional<double> ratio(double part, double whole) {
    return whole > 0 ? std::optional(part / whole) : std::nullopt;
}

std::optional<double> share(std::size_t part, std::size_t whole) {
    return ratio(static_cast<double>(part), static_cast<double>(whole));
}

std::optional<double> delayOf(const Sums& sums, double part) {
    return sums.delays.empty() ? std::nullopt : std::optional(quantile(sums.delays, part));
}

std::string written(double value, int digits) {
    std::ostringstream out;
    out << std::fixed << std::setprecision(digits) << value;
    return out.str();
}

std::string percent(double value) {
    return written(value * kPercent, 1) + " %";
}

std::string milliseconds(double seconds) {
    return written(seconds * kMillisecondsPerSecond, 0) + " ms";
}

std::string factor(double value) {
    return written(value, 3);
}

std::string inCell(std::optional<double> value, const std::function<std::string(double)>& write) {
    return value ? write(*value) : "";
}

std::string row(const std::string& name, const Sums& sums) {
    std::ostringstream out;
    out << "| " << name << " | ";
    if (sums.commands > 0) {
        out << sums.commands << " | " << sums.right << " (" << percent(*share(sums.right, sums.commands))
            << ") | " << sums.wrong << " | " << sums.missed;
    } else {
        out << "| | |";
    }
    out << " | ";
    if (sums.others > 0) {
        out << sums.others << " | " << sums.falseAccepts << " ("
            << percent(*share(sums.falseAccepts, sums.others)) << ")";
    } else {
        out << "|";
    }
    out << " | " << inCell(delayOf(sums, 0.5), milliseconds) << " | "
        << inCell(delayOf(sums, 0.95), milliseconds) << " | "
        << inCell(ratio(sums.processorSeconds, sums.seconds), factor) << " |\n";
    return out.str();
}

using Key = std::function<std::string(const Outcome&)>;

// By key, in the order in which the keys come.
std::vector<std::pair<std::string, std::vector<Outcome>>> groups(const std::vector<Outcome>& outcomes,
                                                                 const Key& key) {
    std::vector<std::pair<std::string, std::vector<Outcome>>> found;
    for (const Outcome& outcome : outcomes) {
        const std::string name = key(outcome);
        auto group = std::ranges::find(found, name, [](const auto& each) { return each.first; });
        if (group == found.end()) {
            group = found.insert(found.end(), {name, {}});
        }
        group->second.push_back(outcome);
    }
    return found;
}

std::string voiceOf(const Outcome& outcome) {
    return outcome.phrase.voice;
}

// "flite" of "flite slt".
std::string familyOf(const Outcome& outcome) {
    return outcome.phrase.voice.substr(0, outcome.phrase.voice.find(' '));
}

std::vector<Outcome> withoutNearMisses(std::vector<Outcome> outcomes) {
    std::erase_if(outcomes, [](const Outcome& outcome) { return outcome.phrase.isNearMiss(); });
    return outcomes;
}

std::string table(const std::vector<Outcome>& outcomes) {
    std::string text =
        "| heard | commands | right | wrong | missed | others | false accepts | median delay | "
        "95th percentile | real-time factor |\n"
        "|---|---|---|---|---|---|---|---|---|---|\n";
    for (const auto& [voice, those] : groups(outcomes, voiceOf)) {
        text += row(voice, sumsOf(those));
    }
    for (const auto& [family, those] : groups(outcomes, familyOf)) {
        if (groups(those, voiceOf).size() > 1) {
            text += row("**" + family + "**", sumsOf(those));
        }
    }
    return text + row("**all**", sumsOf(withoutNearMisses(outcomes)));
}

struct Target {
    const char* what;
    std::function<std::optional<double>(const Sums&)> reached;
    double limit;
    bool isLeast; // else it is the most
    std::function<std::string(double)> write;
};

const std::vector<Target>& targets() {
    static const std::vector<Target> all = {
        {.what = "commands that are recognized as themselves",
         .reached = [](const Sums& sums) { return share(sums.right, sums.commands); },
         .limit = 0.95,
         .isLeast = true,
         .write = percent},
        {.what = "false accepts of what is no command",
         .reached = [](const Sums& sums) { return share(sums.falseAccepts, sums.others); },
         .limit = 0.02,
         .isLeast = false,
         .write = percent},
        {.what = "median delay from the last sound to the event",
         .reached = [](const Sums& sums) { return delayOf(sums, 0.5); },
         .limit = 0.5,
         .isLeast = false,
         .write = milliseconds},
        {.what = "real-time factor on one processor",
         .reached = [](const Sums& sums) { return ratio(sums.processorSeconds, sums.seconds); },
         .limit = 0.1,
         .isLeast = false,
         .write = factor}};
    return all;
}

std::string targetTable(const std::vector<Outcome>& outcomes) {
    const Sums sums = sumsOf(withoutNearMisses(outcomes));
    std::string text = "| target | aimed at | reached | |\n|---|---|---|---|\n";
    for (const Target& target : targets()) {
        const std::optional<double> reached = target.reached(sums);
        if (!reached) {
            continue;
        }
        const bool met = target.isLeast ? *reached >= target.limit : *reached <= target.limit;
        text += std::string("| ") + target.what + " | " + (target.isLeast ? "at least " : "at most ") +
                target.write(target.limit) + " | " + target.write(*reached) + " | " +
                (met ? "met" : "missed by " + target.write(std::abs(*reached - target.limit))) + " |\n";
    }
    return text;
}

} // namespace

std::string report(const std::vector<Outcome>& outcomes) {
    const Key run = [](const Outcome& outcome) { return outcome.phrase.half + ", " + outcome.way; };
    std::string text;
    for (const auto& [name, those] : groups(outcomes, run)) {
        text += "## " + name + "\n\n" + targetTable(those) + "\n" + table(those) + "\n";
    }
    return text;
}

std::string mistakes(const std::vector<Outcome>& outcomes) {
    std::string text;
    for (const Outcome& outcome : outcomes) {
        if (outcome.isRight() || (!outcome.isCommand() && outcome.heard.empty())) {
            continue;
        }
        std::string heard;
        for (const std::string& command : outcome.heard) {
            heard += (heard.empty() ? "\"" : ", \"") + command + "\"";
        }
        text += "- " + outcome.way + ", " + outcome.phrase.half + ", " + outcome.phrase.voice + ": \"" +
                outcome.phrase.text + "\" " + (heard.empty() ? "was missed" : "was heard as " + heard) + "\n";
    }
    return text;
}

double quantile(std::vector<double> values, double part) {
    if (values.empty()) {
        throw std::invalid_argument("no values have no quantile");
    }
    const auto rank = std::ceil(part * static_cast<double>(values.size()));
    const auto at = values.begin() + std::max<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(rank) - 1, 0);
    std::ranges::nth_element(values, at);
    return *at;
}

} // namespace zqm::recognition
