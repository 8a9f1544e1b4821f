#include "bench/recognition/phrase.h"

#include "bench/recognition/json_lines.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace zqm::recognition {

void to_json(nlohmann::json& json, const Phrase& phrase) {
    json = {{"half", phrase.half},
            {"voice", phrase.voice},
            {"text", phrase.text},
            {"command", phrase.command},
            {"file", phrase.file.string()}};
}

void from_json(const nlohmann::json& json, Phrase& phrase) {
    json.at("half").get_to(phrase.half);
    json.at("voice").get_to(phrase.voice);
    json.at("text").get_to(phrase.text);
    json.at("command").get_to(phrase.command);
    phrase.file = json.at("file").get<std::string>();
}

std::vector<Phrase> readPhrases(const std::filesystem::path& list) {
    std::ifstream in(list);
    if (!in) {
        throw std::runtime_error(list.string() + " can't be read");
    }
    try {
        auto phrases = readLines<Phrase>(in);
        for (Phrase& phrase : phrases) {
            phrase.file = list.parent_path() / phrase.file;
        }
        return phrases;
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(list.string() + ", " + error.what());
    }
}

void writePhrases(const std::filesystem::path& list, const std::vector<Phrase>& phrases) {
    std::ofstream out(list);
    for (const Phrase& phrase : phrases) {
        out << nlohmann::json(phrase).dump() << '\n';
    }
    if (!out.flush()) {
        throw std::runtime_error(list.string() + " can't be written");
    }
}

std::vector<std::string> commandsOf(const std::vector<Phrase>& phrases, const std::string& half) {
    std::vector<std::string> commands;
    for (const Phrase& phrase : phrases) {
        if (phrase.half == half && !phrase.command.empty() &&
            std::ranges::find(commands, phrase.command) == commands.end()) {
            commands.push_back(phrase.command);
        }
    }
    return commands;
}

} // namespace zqm::recognition
