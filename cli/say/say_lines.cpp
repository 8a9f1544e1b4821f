#include "cli/say/say_lines.h"

#include "cli/command_line/message.h"
#include "cli/text/json_line.h"

#include <array>
#include <cstdio>
#include <string_view>

namespace zqm::cli {
namespace {

using Kind = SpeakingEvent::Kind;

std::string timeText(std::optional<double> time) {
    if (!time) {
        return "-";
    }
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.3f", *time);
    return text.data();
}

std::string joined(std::initializer_list<std::string_view> fields) {
    std::string line;
    for (const std::string_view field : fields) {
        line.append(line.empty() ? "" : " ").append(field);
    }
    return line;
}

// Where it begins and how far it reaches, in code points and as the platform counts.
void addPlace(Json& line, const SpeakingEvent& event, const SpokenText& text) {
    const std::size_t position = text.codePointsBefore(event.position);
    line["position"] = position;
    if (event.kind == Kind::Word) {
        line["length"] = text.codePointsBefore(event.position + event.length) - position;
    }
    line["utf16"] = event.position;
    if (event.kind == Kind::Word) {
        line["utf16Length"] = event.length;
    }
}

} // namespace

std::string textLine(const SpeakingEvent& event, const SpokenText& text) {
    const std::string time = timeText(event.time);
    switch (event.kind) {
    case Kind::Word:
        return joined({"word", std::to_string(event.position), std::to_string(event.length), time,
                       oneLine(text.cut(event.position, event.length))});
    case Kind::Phoneme:
        return {};
    case Kind::Sync:
        return joined({"sync", std::to_string(event.message), time});
    case Kind::Problem:
        return joined({"problem", std::to_string(event.position), time, oneLine(event.text)});
    case Kind::Finished:
        break;
    }
    return joined({"finish", event.completed ? "true" : "false", time});
}

std::string jsonLine(const SpeakingEvent& event, const SpokenText& text) {
    Json line;
    switch (event.kind) {
    case Kind::Word:
        line["event"] = "word";
        addPlace(line, event, text);
        line["word"] = text.cut(event.position, event.length);
        break;
    case Kind::Phoneme:
        line["event"] = "phoneme";
        line["opcode"] = event.opcode;
        if (!event.symbol.empty()) {
            line["symbol"] = event.symbol;
        }
        break;
    case Kind::Sync:
        line["event"] = "sync";
        line["message"] = event.message;
        break;
    case Kind::Problem:
        line["event"] = "problem";
        addPlace(line, event, text);
        line["text"] = event.text;
        break;
    case Kind::Finished:
        line["event"] = "finish";
        line["completed"] = event.completed;
        break;
    }
    if (event.time) {
        line["time"] = rounded(*event.time);
    }
    return lineOf(line);
}

} // namespace zqm::cli
