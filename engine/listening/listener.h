// Hears spoken commands: sound in, the phrases in it out, each with the command that it is, or none.

#pragma once

#include "engine/listening/command_words.h"
#include "engine/listening/phrase_decoder.h"
#include "engine/listening/phrase_detector.h"
#include "engine/listening/pronunciation_dictionary.h"
#include "engine/listening/room_noise.h"
#include "engine/listening/transcriber.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zqm::engine {

// A command that can't be listened for.
struct UnusableCommand {
    std::size_t command = 0; // its place in the list
    std::string reason;      // for people

    bool operator==(const UnusableCommand&) const = default;
};

struct HeardPhrase {
    double begin = 0; // seconds of sound since the start
    double end = 0;
    std::uint64_t list = 0;
    std::optional<std::size_t> command; // its place in that list; none when it was none of them

    bool operator==(const HeardPhrase&) const = default;
};

// Only the sound counts, never the clock: a file gives what the microphone gives.
class Listener {
public:
    using CommandsSetHandler =
        std::function<void(std::uint64_t list, const std::vector<UnusableCommand>& problems)>;
    using HeardHandler = std::function<void(const HeardPhrase& phrase)>;

    // Where the model was installed when this was built.
    static std::string installedModel();

    // Throws std::runtime_error naming what of the model is missing, and the package that has it.
    explicit Listener(Transcriber transcriber, const std::string& modelFolder = installedModel());
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    void onCommandsSet(CommandsSetHandler handler) { commandsSet_ = std::move(handler); }
    void onHeard(HeardHandler handler) { heard_ = std::move(handler); }

    // Counts from now on, or from the end of the phrase that is going on. Of equal commands, and of those
    // that sound alike, the first is heard.
    void setCommands(std::uint64_t list, std::vector<std::string> commands);

    // kListeningRate samples a second, one channel.
    void take(std::span<const std::int16_t> samples);

    // No more sound: what is in the air is decided.
    void finish();

    // Counts from 0 again; a phrase that is going on is dropped.
    void reset();

private:
    struct Commands {
        std::uint64_t list = 0;
        std::vector<std::string> texts;
    };

    void apply(const Commands& commands);
    void hear(const Phrase& phrase);
    [[nodiscard]] std::optional<std::size_t> commandIn(const Phrase& phrase);
    [[nodiscard]] std::optional<std::size_t> firstSpoken(const std::string& phones) const;

    PronunciationDictionary dictionary_;
    CommandReader reader_;
    PhraseDecoder decoder_;
    PhraseDetector detector_;
    RoomNoise noise_;
    CommandsSetHandler commandsSet_;
    HeardHandler heard_;

    std::uint64_t list_ = 0;
    std::vector<SpokenWords> commands_; // what each of the list sounds like; empty when it can't be heard
    std::optional<Commands> waiting_;   // for the end of the phrase
};

} // namespace zqm::engine
