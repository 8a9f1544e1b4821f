#include "bench/recognition/phrase.h"

#include "bench/recognition/json_lines.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace zqm::recognition {

void to_json(nlohmann::json& json, const Phrase& phrase) {
    json = {{"half", phrase.half}, {"voice", phrase.voice},     {"kind", phrase.kind},
            {"text", phrase.text}, {"command", phrase.command}, {"file", phrase.file.string()}};
}

void from_json(const nlohmann::json& json, Phrase& phrase) {
    json.at("half").get_to(phrase.half);
    json.at("voice").get_to(phrase.voice);
    json.at("kind").get_to(phrase.kind);
    json.at("text").get_to(phrase.text);
    json.at("command").get_to(phrase.command);
    phrase.file = json.at("file").get<std::string>();
}

namespace {

constexpr std::size_t kFields = 4;

std::vector<std::string> fieldsOf(const std::string& line) {
    std::vector<std::string> fields;
    std::istringstream in(line);
    for (std::string field; std::getline(in, field, '\t');) {
        fields.push_back(field);
    }
    return fields;
}

} // namespace

std::vector<Phrase> readPhrases(const std::filesystem::path& list, const std::string& half) {
    std::ifstream in(list);
    if (!in) {
        throw std::runtime_error(list.string() + " can't be read");
    }
    std::vector<Phrase> phrases;
    for (std::string line; std::getline(in, line);) {
        const std::vector<std::string> fields = fieldsOf(line);
        if (fields.size() != kFields) {
            throw std::runtime_error(list.string() + ", line " + std::to_string(phrases.size() + 1) +
                                     ": a phrase is a voice, a kind, a text and a file");
        }
        phrases.push_back({.half = half,
                           .voice = fields[0],
                           .kind = fields[1],
                           .text = fields[2],
                           .command = fields[1] == "command" ? fields[2] : "",
                           .file = fields[3]});
    }
    return phrases;
}

std::vector<std::string> commandsOf(const std::vector<Phrase>& phrases) {
    std::vector<std::string> commands;
    for (const Phrase& phrase : phrases) {
        if (!phrase.command.empty() && std::ranges::find(commands, phrase.command) == commands.end()) {
            commands.push_back(phrase.command);
        }
    }
    return commands;
}

} // namespace zqm::recognition
