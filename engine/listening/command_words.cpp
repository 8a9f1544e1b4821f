#include "engine/listening/command_words.h"

#include <sstream>

namespace zqm::engine {

CommandWords CommandReader::wordsOf(const std::string& command) const {
    std::vector<CommandWord> words;
    std::istringstream stream(command);
    for (std::string word; stream >> word;) {
        for (char& letter : word) {
            letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
        }
        std::vector<std::string> pronunciations = dictionary_.find(word);
        if (pronunciations.empty()) {
            pronunciations = transcriber_(word);
        }
        if (pronunciations.empty()) {
            return "it isn't known how \"" + word + "\" is pronounced";
        }
        words.push_back({word, std::move(pronunciations)});
    }
    if (words.empty()) {
        return std::string("it has no words");
    }
    return words;
}

} // namespace zqm::engine
