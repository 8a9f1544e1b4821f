#include "engine/listening/listener.h"

#include "engine/listening/phrase_judge.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace zqm::engine {

namespace {

// Words of earlier lists stay in memory until there are so many.
constexpr std::size_t kMostForgottenWords = 5000;

// A phrase that takes longer than the longest command can, spoken slowly, is none of them; it isn't looked
// at.
constexpr double kSecondsAtMost = 1.5;
constexpr double kSecondsPerPhone = 0.25;
constexpr std::size_t kMostPhones = 1000; // what is listened to at once has to be kept

double seconds(std::uint64_t samples) {
    return static_cast<double>(samples) / kListeningRate;
}

// Whether the phones are one way to say the words from a place on.
bool saysWords(std::string_view phones, const SpokenWords& words, std::size_t place) {
    if (place == words.size()) {
        return phones.empty();
    }
    return std::any_of(words[place].begin(), words[place].end(), [&](const std::string& pronunciation) {
        if (!phones.starts_with(pronunciation)) {
            return false;
        }
        const std::string_view rest = phones.substr(pronunciation.size());
        return rest.empty() ? place + 1 == words.size()
                            : rest[0] == ' ' && saysWords(rest.substr(1), words, place + 1);
    });
}

std::size_t phonesIn(const SpokenWords& words) {
    std::size_t phones = 0;
    for (const std::vector<std::string>& pronunciations : words) {
        std::size_t most = 0;
        for (const std::string& pronunciation : pronunciations) {
            const auto blanks = std::count(pronunciation.begin(), pronunciation.end(), ' ');
            most = std::max(most, static_cast<std::size_t>(blanks) + 1);
        }
        phones += most;
    }
    return phones;
}

std::size_t longestPhrase(const std::vector<SpokenWords>& commands) {
    std::size_t phones = 0;
    for (const SpokenWords& command : commands) {
        phones = std::max(phones, phonesIn(command));
    }
    const double longest =
        kSecondsAtMost + kSecondsPerPhone * static_cast<double>(std::min(phones, kMostPhones));
    return phones == 0 ? 0 : static_cast<std::size_t>(longest * kListeningRate);
}

} // namespace

std::string Listener::installedModel() {
    return ZQM_MODEL_FOLDER;
}

Listener::Listener(Transcriber transcriber, const std::string& modelFolder)
    : dictionary_(modelFolder + "/cmudict-en-us.dict"), reader_(dictionary_, std::move(transcriber)),
      decoder_(modelFolder + "/en-us"), detector_([this](const Phrase& phrase) { hear(phrase); }) {}

void Listener::setCommands(std::uint64_t list, std::vector<std::string> commands) {
    waiting_ = Commands{list, std::move(commands)};
    if (!detector_.isInPhrase()) {
        apply(*std::exchange(waiting_, std::nullopt));
    }
}

void Listener::apply(const Commands& commands) {
    std::vector<UnusableCommand> problems;
    commands_.assign(commands.texts.size(), {});
    for (std::size_t i = 0; i < commands.texts.size(); ++i) {
        CommandWords words = reader_.wordsOf(commands.texts[i]);
        if (const auto* reason = std::get_if<std::string>(&words)) {
            problems.push_back({i, *reason});
            continue;
        }
        for (CommandWord& word : std::get<std::vector<CommandWord>>(words)) {
            commands_[i].push_back(std::move(word.pronunciations));
        }
    }

    if (decoder_.words() > kMostForgottenWords) {
        decoder_.clear();
    }
    std::vector<std::vector<std::size_t>> sentences;
    for (const SpokenWords& command : commands_) {
        if (!command.empty()) {
            auto& sentence = sentences.emplace_back();
            std::transform(command.begin(), command.end(), std::back_inserter(sentence),
                           [&](const auto& pronunciations) { return decoder_.number(pronunciations); });
        }
    }
    decoder_.setSentences(sentences);
    detector_.setLongest(longestPhrase(commands_));
    list_ = commands.list;
    if (commandsSet_) {
        commandsSet_(list_, problems);
    }
}

void Listener::take(std::span<const std::int16_t> samples) {
    std::vector<std::int16_t> inRoom(samples.begin(), samples.end());
    noise_.addTo(inRoom);
    detector_.take(inRoom);
}

void Listener::finish() {
    detector_.finish();
}

void Listener::reset() {
    detector_.reset();
    noise_ = {};
    if (waiting_) {
        apply(*std::exchange(waiting_, std::nullopt));
    }
}

void Listener::hear(const Phrase& phrase) {
    const HeardPhrase heard{seconds(phrase.begin), seconds(phrase.end), list_, commandIn(phrase)};
    if (heard_) {
        heard_(heard);
    }
    if (waiting_) {
        apply(*std::exchange(waiting_, std::nullopt));
    }
}

std::optional<std::size_t> Listener::commandIn(const Phrase& phrase) {
    if (phrase.samples.empty()) {
        return std::nullopt;
    }
    const Fit command = decoder_.bestSentence(phrase.samples);
    if (command.frames == 0) {
        return std::nullopt;
    }
    if (!isCommand(doubtsOf(phrase, command, decoder_.bestSounds(phrase.samples)))) {
        return std::nullopt;
    }
    return firstSpoken(command.phones);
}

std::optional<std::size_t> Listener::firstSpoken(const std::string& phones) const {
    const auto first = std::find_if(commands_.begin(), commands_.end(), [&](const SpokenWords& command) {
        return !command.empty() && saysWords(phones, command, 0);
    });
    return first == commands_.end() ? std::nullopt : std::optional<std::size_t>(first - commands_.begin());
}

} // namespace zqm::engine
