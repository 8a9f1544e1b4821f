#include "engine/narration.h"

#include "engine/protocol/phoneme_symbols.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zqm::engine {

namespace {

// A silence without end is made in parts of so many samples.
constexpr std::uint64_t kSilenceAtOnce = 16384;

constexpr double kLowestPitch = 1;
constexpr double kHighestPitch = 127;

template <typename... Case>
struct Cases : Case... {
    using Case::operator()...;
};

template <typename... Case>
Cases(Case...) -> Cases<Case...>; // which clang finds by itself from version 17 on

// Whether the command acts together with a word, without parting the text where it stands: what is spoken in
// one go sounds better.
bool actsWithWord(const Command& command) {
    return std::holds_alternative<SetVolume>(command) || std::holds_alternative<SyncMessage>(command) ||
           std::holds_alternative<Mistake>(command);
}

bool isGiven(const std::optional<double>& value) {
    return value && !std::isnan(*value);
}

double changed(const Number& change, const std::optional<double>& present, double own, double least,
               double most) {
    return std::clamp(change.appliedTo(isGiven(present) ? *present : own), least, most);
}

template <typename Value>
void take(std::optional<Value>& present, const std::optional<Value>& given) {
    if (given) {
        present = given;
    }
}

void merge(protocol::Manner& present, const protocol::Manner& given) {
    take(present.rate, given.rate);
    take(present.volume, given.volume);
    take(present.pitchBase, given.pitchBase);
    take(present.pitchModulation, given.pitchModulation);
    take(present.input, given.input);
    take(present.characters, given.characters);
    take(present.numbers, given.numbers);
}

} // namespace

Narration::Narration(protocol::Speak request, const protocol::Voice& voice, Speaker& speaker)
    : utterance_(request.utterance), voice_(voice), speaker_(speaker),
      text_(parseEmbeddedText(std::move(request.text), request.delimiters)),
      pieces_(std::exchange(text_.text, {}), voice.language), initial_(request.manner),
      manner_(request.manner) {}

std::optional<Stretch> Narration::next() {
    if (std::exchange(isRespoken_, false)) {
        return speak();
    }
    if (silence_ > 0) {
        return silence();
    }
    carryOver();
    for (;;) {
        pieces_.setInput(manner_.input.value_or(protocol::InputMode::Text));
        if (auto piece = pieces_.next(nextCut())) {
            piece_ = std::move(*piece);
            takeCommandsOf(piece_);
            pieceEmphasis_ = piece_.words.empty() ? std::nullopt : std::exchange(emphasis_, std::nullopt);
            return speak();
        }
        if (executeCut()) {
            if (silence_ > 0) {
                return silence();
            }
        } else {
            return leftOvers();
        }
    }
}

void Narration::adjust(const protocol::Manner& manner) {
    merge(manner_, manner);
    merge(initial_, manner);
}

std::optional<std::size_t> Narration::makeAnew(std::size_t from) {
    const auto next = std::lower_bound(speech_.wordTimes.begin(), speech_.wordTimes.end(), from);
    if (next == speech_.wordTimes.end()) {
        return std::nullopt;
    }
    const std::size_t begin = *next;
    const auto word = static_cast<std::size_t>(next - speech_.wordTimes.begin());
    if (word > 0) {
        std::erase_if(placed_, [&](const PlacedCommand& placed) { return wordFor(placed) < word; });
        piece_ = piece_.from(word);
        pieceEmphasis_.reset();
    }
    opcode_ = opcodeBefore_;
    for (const SpokenPhoneme& phoneme : speech_.phonemes) {
        if (phoneme.sample < begin) {
            opcode_ = phoneme.opcode;
        }
    }
    speech_ = {};
    isRespoken_ = true;
    return begin;
}

// ---- commands

// What found no word in the last piece waits for the first of the next.
void Narration::carryOver() {
    std::erase_if(placed_,
                  [&](const PlacedCommand& placed) { return wordFor(placed) < piece_.words.size(); });
}

std::size_t Narration::wordFor(const PlacedCommand& placed) const {
    const auto word = std::find_if(piece_.words.begin(), piece_.words.end(),
                                   [&](const Word& candidate) { return candidate.utf16.begin >= placed.at; });
    return static_cast<std::size_t>(word - piece_.words.begin());
}

// The piece ends before the next cut, so all that stands before its last word acts with its words.
void Narration::takeCommandsOf(const Piece& piece) {
    const std::vector<PlacedCommand>& commands = text_.commands;
    while (!piece.words.empty() && command_ < commands.size() &&
           commands[command_].at <= piece.words.back().utf16.begin) {
        placed_.push_back(commands[command_++]);
    }
}

// Where the text is next parted by a command.
std::size_t Narration::nextCut() {
    cut_ = std::max(cut_, command_);
    while (cut_ < text_.commands.size() && actsWithWord(text_.commands[cut_].command)) {
        ++cut_;
    }
    return cut_ == text_.commands.size() ? TextPieces::kNoLimit : text_.commands[cut_].at;
}

// At a cut, or at the end of the text: up to the first silence. False: there is no command left.
bool Narration::executeCut() {
    if (command_ == text_.commands.size()) {
        return false;
    }
    const std::size_t cut = nextCut();
    while (command_ < text_.commands.size() && text_.commands[command_].at <= cut && silence_ == 0) {
        execute(text_.commands[command_++]);
    }
    return true;
}

void Narration::execute(const PlacedCommand& placed) {
    const Cases act{
        [&](const SetRate& command) {
            manner_.rate = changed(command.wordsPerMinute, manner_.rate, voice_.rate, Speaker::kSlowest,
                                   Speaker::kFastest);
        },
        [&](const SetPitchBase& command) {
            manner_.pitchBase =
                changed(command.pitch, manner_.pitchBase, voice_.pitchBase, kLowestPitch, kHighestPitch);
        },
        [&](const SetPitchModulation& command) {
            manner_.pitchModulation = changed(command.modulation, manner_.pitchModulation,
                                              voice_.pitchModulation, 0, kHighestPitch);
        },
        [&](const Silence& command) {
            constexpr std::uint64_t kMilliseconds = 1000;
            silence_ =
                command.milliseconds * static_cast<std::uint64_t>(speaker_.sampleRate()) / kMilliseconds;
        },
        [&](const Emphasis& command) { emphasis_ = command.more; },
        [&](const SetCharacters& command) { manner_.characters = command.mode; },
        [&](const SetNumbers& command) { manner_.numbers = command.mode; },
        [&](const SetInput& command) { manner_.input = command.mode; },
        [&](const Reset&) {
            manner_ = initial_;
            emphasis_.reset();
            placed_.push_back({placed.at, placed.original, SetVolume{{initial_.volume.value_or(1), {}}}});
        },
        [&](const auto&) { placed_.push_back(placed); },
    };
    std::visit(act, placed.command);
}

// ---- sound

std::optional<Stretch> Narration::silence() {
    const std::uint64_t count = std::min(silence_, kSilenceAtOnce);
    silence_ -= count;
    speech_ = {}; // none of its words can be made anew any more
    Stretch stretch;
    addPhoneme(stretch, 0, protocol::kSilenceOpcode);
    stretch.samples.resize(static_cast<std::size_t>(count));
    return stretch;
}

Stretch Narration::speak() {
    // Another text may have been asked about meanwhile.
    speaker_.setVoice(voice_);
    speaker_.setManner(manner_);
    speech_ = speaker_.synthesize(piece_, pieceEmphasis_);
    Stretch stretch;
    stretch.samples = std::move(speech_.samples);
    for (const PlacedCommand& placed : placed_) {
        if (const std::size_t word = wordFor(placed); word < piece_.words.size()) {
            addCue(stretch, placed, speech_.wordTimes[word]);
        }
    }
    addMistakes(stretch);
    addWords(stretch);
    opcodeBefore_ = opcode_;
    addPhonemes(stretch);
    std::stable_sort(stretch.cues.begin(), stretch.cues.end(),
                     [](const Cue& left, const Cue& right) { return left.sample < right.sample; });
    return stretch;
}

// No word is left with which it could come. The last phoneme is silence.
std::optional<Stretch> Narration::leftOvers() {
    if (placed_.empty() && opcode_ == protocol::kSilenceOpcode) {
        return std::nullopt;
    }
    piece_ = {};
    speech_ = {};
    Stretch stretch;
    addPhoneme(stretch, 0, protocol::kSilenceOpcode);
    for (const PlacedCommand& placed : std::exchange(placed_, {})) {
        addCue(stretch, placed, 0);
    }
    return stretch;
}

void Narration::addCue(Stretch& stretch, const PlacedCommand& placed, std::size_t sample) const {
    const Cases add{
        [&](const SetVolume& command) {
            stretch.volumes.push_back({sample, command.volume});
        },
        [&](const SyncMessage& command) {
            stretch.cues.push_back({sample, protocol::Sync{utterance_, command.message}});
        },
        [&](const Mistake& mistake) {
            stretch.cues.push_back(
                {sample, protocol::Problem{utterance_, mistake.code, placed.original, mistake.message}});
        },
        [](const auto&) {},
    };
    std::visit(add, placed.command);
}

void Narration::addWords(Stretch& stretch) const {
    for (std::size_t index = 0; index < piece_.words.size(); ++index) {
        const Range& unit = piece_.words[index].utf16;
        const std::size_t begin = text_.originalPosition(unit.begin);
        const std::size_t length = text_.originalPosition(unit.end - 1) + 1 - begin;
        const bool isLast = index + 1 == piece_.words.size();
        const std::size_t end =
            endOfWord(index, isLast ? stretch.samples.size() : speech_.wordTimes[index + 1]);
        stretch.cues.push_back({speech_.wordTimes[index], protocol::Word{utterance_, begin, length}, end,
                                std::find(piece_.sentenceStarts.begin(), piece_.sentenceStarts.end(),
                                          index) != piece_.sentenceStarts.end()});
        stretch.soundEnd = end;
    }
}

// Without the pause before what follows.
std::size_t Narration::endOfWord(std::size_t word, std::size_t next) const {
    const auto behind =
        std::partition_point(speech_.phonemes.begin(), speech_.phonemes.end(),
                             [&](const SpokenPhoneme& phoneme) { return phoneme.sample < next; });
    if (behind == speech_.phonemes.begin()) {
        return next;
    }
    const SpokenPhoneme& last = *std::prev(behind);
    return last.opcode == protocol::kSilenceOpcode && last.sample > speech_.wordTimes[word] ? last.sample
                                                                                            : next;
}

void Narration::addMistakes(Stretch& stretch) const {
    for (const TextMistake& mistake : speech_.mistakes) {
        const auto next =
            std::partition_point(piece_.words.begin(), piece_.words.end(), [&](const Word& word) {
                return word.codePoints.begin <= mistake.codePoint;
            });
        const auto word = static_cast<std::size_t>(next - piece_.words.begin());
        const std::size_t position = text_.originalPosition(piece_.utf16At(mistake.codePoint));
        stretch.cues.push_back({word == 0 ? 0 : speech_.wordTimes[word - 1],
                                protocol::Problem{utterance_, mistake.code, position, mistake.message}});
    }
}

void Narration::addPhonemes(Stretch& stretch) {
    if (!opcode_) {
        addPhoneme(stretch, 0, protocol::kSilenceOpcode);
    }
    for (const SpokenPhoneme& phoneme : speech_.phonemes) {
        addPhoneme(stretch, phoneme.sample, phoneme.opcode);
    }
}

// Silence is told once, however many follow each other.
void Narration::addPhoneme(Stretch& stretch, std::size_t sample, std::int16_t opcode) {
    if (opcode != protocol::kSilenceOpcode || opcode_ != opcode) {
        stretch.cues.push_back({sample, protocol::Phoneme{utterance_, opcode}});
    }
    opcode_ = opcode;
}

} // namespace zqm::engine
