#include "engine/text/embedded_text.h"

#include "engine/text/characters.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <optional>
#include <string_view>
#include <unicode/utf8.h>
#include <utility>

namespace zqm::engine {

using protocol::Delimiters;
using protocol::InputMode;
using protocol::SpellingMode;

double Number::appliedTo(double present) const {
    switch (kind) {
    case Kind::Plus:
        return present + value;
    case Kind::Minus:
        return present - value;
    case Kind::Absolute:
        break;
    }
    return value;
}

std::size_t EmbeddedText::originalPosition(std::size_t unit) const {
    const auto next = std::upper_bound(runs_.begin(), runs_.end(), unit,
                                       [](std::size_t wanted, const Run& run) { return wanted < run.unit; });
    const Run run = next == runs_.begin() ? Run{} : *std::prev(next);
    return run.original + (unit - run.unit);
}

void EmbeddedText::continueAt(std::size_t unit, std::size_t original) {
    runs_.push_back({unit, original});
}

namespace {

// ---- characters

char32_t characterAt(std::string_view text, std::size_t& at) {
    UChar32 character = 0;
    U8_NEXT_UNSAFE(text, at, character);
    return static_cast<char32_t>(character);
}

char32_t firstCharacter(std::string_view text) {
    std::size_t at = 0;
    return text.empty() ? U'\0' : characterAt(text, at);
}

char32_t lastCharacter(std::string_view text) {
    if (text.empty()) {
        return U'\0';
    }
    std::size_t at = text.size();
    while (at > 0 && U8_IS_TRAIL(text[at - 1])) {
        --at;
    }
    at -= at > 0 ? 1 : 0;
    return characterAt(text, at);
}

std::size_t countUnits(std::string_view text) {
    constexpr unsigned char kFirstOfFour = 0xF0; // such a character is a surrogate pair
    std::size_t units = 0;
    for (const char byte : text) {
        units += U8_IS_TRAIL(byte) ? 0 : static_cast<unsigned char>(byte) >= kFirstOfFour ? 2 : 1;
    }
    return units;
}

std::size_t countCharacters(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char byte) { return !U8_IS_TRAIL(byte); }));
}

std::string_view withoutBlanks(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size()) {
        std::size_t next = at;
        if (!isBlank(characterAt(text, next))) {
            break;
        }
        at = next;
    }
    return text.substr(at);
}

// What stands before the first blank.
std::string_view firstWord(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size()) {
        std::size_t next = at;
        if (isBlank(characterAt(text, next))) {
            break;
        }
        at = next;
    }
    return text.substr(0, at);
}

bool isAsciiDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

char lowerCase(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

bool isAsciiLetter(char byte) {
    return lowerCase(byte) >= 'a' && lowerCase(byte) <= 'z';
}

bool isSame(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char left, char right) { return lowerCase(left) == lowerCase(right); });
}

std::string quoted(std::string_view text) {
    constexpr std::size_t kLongest = 40; // characters
    std::size_t at = 0;
    for (std::size_t count = 0; at < text.size() && count < kLongest; ++count) {
        characterAt(text, at);
    }
    return '"' + std::string(text.substr(0, at)) + (at < text.size() ? "\u2026\"" : "\"");
}

// ---- arguments

using Arguments = std::vector<std::string_view>;

struct NoTrace {};
struct BadArgument {
    std::size_t index = 0;
};
struct LacksArgument {};
struct Unimplemented {
    std::size_t index = 0;
};

// What comes of a command that has as many arguments as it may have.
using Outcome = std::variant<NoTrace, Command, Delimiters, BadArgument, LacksArgument, Unimplemented>;

template <typename Value>
struct Choice {
    std::string_view name;
    Value value;
};

constexpr std::array kSpellings{Choice<SpellingMode>{"NORM", SpellingMode::Normal},
                                Choice<SpellingMode>{"LTRL", SpellingMode::Literal}};
constexpr std::array kInputs{Choice<InputMode>{"TEXT", InputMode::Text},
                             Choice<InputMode>{"PHON", InputMode::Phonemes}};
constexpr std::array<std::string_view, 5> kContexts{"WSKP", "WORD", "NORM", "TSKP", "TEXT"};
constexpr std::string_view kTune = "TUNE";

template <typename Value, std::size_t count>
std::optional<Value> choose(const std::array<Choice<Value>, count>& choices, std::string_view name) {
    const auto found = std::find_if(choices.begin(), choices.end(),
                                    [&](const Choice<Value>& choice) { return isSame(choice.name, name); });
    return found == choices.end() ? std::nullopt : std::optional(found->value);
}

// Digits, and a full stop that may stand among them.
std::optional<double> readReal(std::string_view text) {
    const auto isOfNumber = [](char byte) { return isAsciiDigit(byte) || byte == '.'; };
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value, std::chars_format::fixed);
    return std::all_of(text.begin(), text.end(), isOfNumber) && rest == end && error == std::errc{}
               ? std::optional(value)
               : std::nullopt;
}

// Decimal, or hexadecimal behind 0x.
std::optional<std::uint32_t> readInteger(std::string_view text) {
    constexpr int kDecimal = 10;
    constexpr int kHexadecimal = 16;
    const bool isHexadecimal = isSame(text.substr(0, 2), "0x");
    const std::string_view digits = text.substr(isHexadecimal ? 2 : 0);
    std::uint32_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [rest, error] =
        std::from_chars(digits.data(), end, value, isHexadecimal ? kHexadecimal : kDecimal);
    return rest == end && error == std::errc{} ? std::optional(value) : std::nullopt;
}

std::optional<std::uint32_t> readFourCharacters(std::string_view text) {
    const auto isPrintable = [](char byte) { return byte > ' ' && byte <= '~'; };
    if (text.size() != sizeof(std::uint32_t) || !std::all_of(text.begin(), text.end(), isPrintable)) {
        return std::nullopt;
    }
    std::uint32_t value = 0;
    for (const char byte : text) {
        value = (value << 8U) | static_cast<std::uint32_t>(byte);
    }
    return value;
}

// An integer, or four characters that don't look like one.
std::optional<std::uint32_t> readCode(std::string_view text) {
    const bool isNumber =
        std::all_of(text.begin(), text.end(), isAsciiDigit) || isSame(text.substr(0, 2), "0x");
    return isNumber ? readInteger(text) : readFourCharacters(text);
}

template <typename Made, typename Value>
Outcome commandOf(const std::optional<Value>& value) {
    return value ? Outcome(Command(Made{*value})) : Outcome(BadArgument{});
}

constexpr int kNoLimit = std::numeric_limits<int>::max();

// A value is to be within the limits; how much it is raised or lowered has none.
template <typename Made, int least, int most>
Outcome number(const Arguments& arguments) {
    std::string_view text = arguments.front();
    Number number;
    if (text.front() == '+' || text.front() == '-') {
        number.kind = text.front() == '+' ? Number::Kind::Plus : Number::Kind::Minus;
        text = withoutBlanks(text.substr(1));
    }
    const std::optional<double> value = readReal(text);
    if (!value || (number.kind == Number::Kind::Absolute && (*value < least || *value > most))) {
        return BadArgument{};
    }
    number.value = *value;
    return Command(Made{number});
}

template <typename Made>
Outcome spelling(const Arguments& arguments) {
    return commandOf<Made>(choose(kSpellings, arguments.front()));
}

Outcome input(const Arguments& arguments) {
    return isSame(arguments.front(), kTune) ? Outcome(Unimplemented{})
                                            : commandOf<SetInput>(choose(kInputs, arguments.front()));
}

Outcome emphasis(const Arguments& arguments) {
    constexpr std::array kDegrees{Choice<bool>{"+", true}, Choice<bool>{"-", false}};
    return commandOf<Emphasis>(choose(kDegrees, arguments.front()));
}

Outcome silence(const Arguments& arguments) {
    return commandOf<Silence>(readInteger(arguments.front()));
}

Outcome syncMessage(const Arguments& arguments) {
    return commandOf<SyncMessage>(readCode(arguments.front()));
}

Outcome reset(const Arguments& arguments) {
    return readInteger(arguments.front()) == 0U ? Outcome(Command(Reset{})) : Outcome(BadArgument{});
}

Outcome comment(const Arguments& /*arguments*/) {
    return NoTrace{};
}

// Tells what part of speech a lone word is, which makes no difference here.
Outcome context(const Arguments& arguments) {
    const bool known = std::any_of(kContexts.begin(), kContexts.end(),
                                   [&](std::string_view name) { return isSame(name, arguments.front()); });
    return known ? Outcome(NoTrace{}) : Outcome(BadArgument{});
}

// Every version of the commands is spoken alike.
Outcome version(const Arguments& arguments) {
    return readCode(arguments.front()) ? Outcome(NoTrace{}) : Outcome(BadArgument{});
}

// Commands of another engine's own.
Outcome extension(const Arguments& arguments) {
    return readFourCharacters(arguments.front()) ? Outcome(Unimplemented{}) : Outcome(BadArgument{});
}

Outcome delimiters(const Arguments& arguments) {
    constexpr std::size_t kLongest = 2;
    constexpr std::string_view kNuls("\0\0", kLongest);
    std::string all;
    for (const std::string_view delimiter : arguments) {
        all += delimiter;
    }
    if (arguments.front() == kNuls || all == kNuls) {
        return Delimiters{"", ""};
    }
    if (arguments.size() < 2) {
        return LacksArgument{};
    }
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string_view delimiter = arguments[index];
        if (countCharacters(delimiter) > kLongest || delimiter.find('\0') != std::string_view::npos) {
            return BadArgument{index};
        }
    }
    return Delimiters{std::string(arguments[0]), std::string(arguments[1])};
}

// ---- the commands

enum class Form : std::uint8_t {
    Words,
    SignedNumber,
    Open // the engine doesn't look at what more there is
};

struct Row {
    std::string_view name;
    Form form;
    std::size_t least; // arguments
    std::size_t most;
    std::string_view takes;
    Outcome (*read)(const Arguments&);
};

constexpr std::string_view kSpellingNames = "NORM or LTRL";
constexpr std::string_view kCode =
    "four characters, or a number of 32 bits (decimal, or hexadecimal behind 0x)";

constexpr std::string_view kComment = "cmnt";

constexpr std::array kRows{
    Row{"char", Form::Words, 1, 1, kSpellingNames, spelling<SetCharacters>},
    Row{kComment, Form::Open, 0, 0, "any text", comment},
    Row{"ctxt", Form::Words, 1, 1, "WSKP, WORD, NORM, TSKP or TEXT", context},
    Row{"dlim", Form::Words, 1, 2, "two delimiters of one or two characters each", delimiters},
    Row{"emph", Form::Words, 1, 1, "+ or -", emphasis},
    Row{"inpt", Form::Words, 1, 1, "TEXT or PHON", input},
    Row{"nmbr", Form::Words, 1, 1, kSpellingNames, spelling<SetNumbers>},
    Row{"pbas", Form::SignedNumber, 1, 1, "a pitch from 1 to 127, or + or - and a number",
        number<SetPitchBase, 1, 127>},
    Row{"pmod", Form::SignedNumber, 1, 1, "a modulation from 0 to 127, or + or - and a number",
        number<SetPitchModulation, 0, 127>},
    Row{"rate", Form::SignedNumber, 1, 1, "words a minute, at least 1, or + or - and a number",
        number<SetRate, 1, kNoLimit>},
    Row{"rset", Form::Words, 1, 1, "0", reset},
    Row{"slnc", Form::Words, 1, 1, "whole milliseconds", silence},
    Row{"sync", Form::Words, 1, 1, kCode, syncMessage},
    Row{"vers", Form::Words, 1, 1, kCode, version},
    Row{"volm", Form::SignedNumber, 1, 1, "a volume from 0 to 1, or + or - and a number",
        number<SetVolume, 0, 1>},
    Row{"xtnd", Form::Open, 1, 1, "the four characters of an engine, and what that understands", extension},
};

std::string_view leadingLetters(std::string_view text) {
    return text.substr(0, static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isAsciiLetter) -
                                                   text.begin()));
}

// The row of the command that a text begins with.
const Row* findRow(std::string_view text) {
    const std::string_view name = leadingLetters(text);
    const auto* const row = std::find_if(kRows.begin(), kRows.end(),
                                         [&](const Row& candidate) { return isSame(candidate.name, name); });
    return row == kRows.end() ? nullptr : row;
}

// The first of what follows a command's name. A sign may stand apart from its number.
std::string_view firstArgument(std::string_view text, const Row& row) {
    const std::string_view word = firstWord(text);
    if (row.form == Form::SignedNumber && (word == "+" || word == "-")) {
        const std::string_view number = firstWord(withoutBlanks(text.substr(word.size())));
        return text.substr(0, static_cast<std::size_t>(number.data() + number.size() - text.data()));
    }
    return word;
}

// As many as the command may have, and the first beyond them.
Arguments splitArguments(std::string_view text, const Row& row) {
    const std::size_t count = row.form == Form::Open ? row.least : row.most + 1;
    Arguments arguments;
    text = withoutBlanks(text);
    while (!text.empty() && arguments.size() < count) {
        arguments.push_back(firstArgument(text, row));
        text = withoutBlanks(text.substr(arguments.back().size()));
    }
    return arguments;
}

// ---- reading a text

class Reader {
public:
    Reader(std::string_view source, Delimiters delimiters) : source_(source) {
        result_.delimiters = std::move(delimiters);
    }

    EmbeddedText read();

private:
    [[nodiscard]] bool hasDelimiters() const {
        return !result_.delimiters.prefix.empty() && !result_.delimiters.suffix.empty();
    }

    std::size_t findSuffix(std::size_t from);
    [[nodiscard]] bool opensAgain(std::string_view list) const;
    void copyUntil(std::size_t end);
    void readList(std::string_view list);
    void readCommand(std::string_view command);
    void take(const Row& row, std::string_view name, std::string_view rest);
    void place(std::string_view where, Command command);
    void mistake(std::string_view where, int code, std::string message);
    std::size_t unitsBefore(std::size_t byte);

    std::string_view source_;
    EmbeddedText result_;
    Delimiters next_;                     // for what follows the list being read
    std::size_t copied_ = 0;              // bytes of source_ that are dealt with
    std::size_t units_ = 0;               // of result_.text
    std::size_t sinceCopied_ = 0;         // commands before these are followed by text
    bool removed_ = false;                // a list since text was copied
    std::size_t countedBytes_ = 0;        // of source_
    std::size_t countedUnits_ = 0;        // in them
    std::optional<std::size_t> suffixAt_; // first one at or behind where it was looked for
};

// Asked for places in their order, so a text is counted once.
std::size_t Reader::unitsBefore(std::size_t byte) {
    countedUnits_ += countUnits(source_.substr(countedBytes_, byte - countedBytes_));
    countedBytes_ = byte;
    return countedUnits_;
}

// Found once for all the prefixes before it, lest many of them take the square of their number.
std::size_t Reader::findSuffix(std::size_t from) {
    if (!suffixAt_ || *suffixAt_ < from) {
        suffixAt_ = source_.find(result_.delimiters.suffix, from);
    }
    return *suffixAt_;
}

// Then what seemed a list is none: otherwise a lone delimiter would take all up to the next list with it.
bool Reader::opensAgain(std::string_view list) const {
    return list.find(result_.delimiters.prefix) != std::string_view::npos &&
           !isSame(leadingLetters(withoutBlanks(list)), kComment);
}

void Reader::copyUntil(std::size_t end) {
    const std::string_view part = source_.substr(copied_, end - copied_);
    if (part.empty()) {
        return;
    }
    const std::size_t original = unitsBefore(copied_);
    if (removed_) {
        const char32_t before = lastCharacter(result_.text);
        if ((isLetterOrNumber(before) || isMark(before)) && isLetterOrNumber(firstCharacter(part))) {
            result_.text += ' ';
            ++units_;
            for (std::size_t index = sinceCopied_; index < result_.commands.size(); ++index) {
                ++result_.commands[index].at;
            }
        }
        result_.continueAt(units_, original);
        removed_ = false;
    }
    result_.text += part;
    units_ += unitsBefore(end) - original;
    sinceCopied_ = result_.commands.size();
    copied_ = end;
}

EmbeddedText Reader::read() {
    std::size_t from = 0;
    while (hasDelimiters()) {
        const Delimiters& delimiters = result_.delimiters;
        const std::size_t start = source_.find(delimiters.prefix, from);
        if (start == std::string_view::npos) {
            break;
        }
        copyUntil(start);
        const std::size_t begin = start + delimiters.prefix.size();
        const std::size_t end = findSuffix(begin);
        const std::string_view list =
            source_.substr(begin, end == std::string_view::npos ? end : end - begin);
        if (end == std::string_view::npos || opensAgain(list)) {
            mistake(source_.substr(start), kBadCommandText,
                    "The commands behind " + quoted(delimiters.prefix) + " have no end.");
            from = begin;
            continue;
        }
        next_ = delimiters;
        from = end + delimiters.suffix.size();
        readList(list);
        copied_ = from;
        removed_ = true;
        if (result_.delimiters != next_) {
            result_.delimiters = next_;
            suffixAt_.reset();
        }
    }
    copyUntil(source_.size());
    return std::move(result_);
}

void Reader::readList(std::string_view list) {
    while (!list.empty()) {
        list = withoutBlanks(list);
        const Row* const row = findRow(list);
        std::size_t end = list.find(';');
        if (row != nullptr && row->name == kComment) {
            while (end != std::string_view::npos && findRow(withoutBlanks(list.substr(end + 1))) == nullptr) {
                end = list.find(';', end + 1);
            }
        }
        readCommand(list.substr(0, end));
        list = end == std::string_view::npos ? std::string_view() : list.substr(end + 1);
    }
}

void Reader::readCommand(std::string_view command) {
    if (command.empty()) {
        return;
    }
    const Row* const row = findRow(command);
    if (row == nullptr) {
        mistake(command, kBadCommandText, quoted(firstWord(command)) + " is no command.");
        return;
    }
    take(*row, command.substr(0, row->name.size()), command.substr(row->name.size()));
}

void Reader::take(const Row& row, std::string_view name, std::string_view rest) {
    const Arguments arguments = splitArguments(rest, row);
    const std::string command = quoted(row.name);
    const std::string takes(row.takes);
    if (arguments.size() > row.most) {
        mistake(arguments.back(), kBadParameterCount,
                command + " takes only " + takes + ", not also " + quoted(arguments.back()) + '.');
        return;
    }
    const Outcome outcome = arguments.size() < row.least ? Outcome(LacksArgument{}) : row.read(arguments);
    if (const auto* const read = std::get_if<Command>(&outcome)) {
        place(name, *read);
    } else if (const auto* const changed = std::get_if<Delimiters>(&outcome)) {
        next_ = *changed;
    } else if (std::holds_alternative<LacksArgument>(outcome)) {
        mistake(name, kBadParameterCount, command + " lacks what it takes: " + takes + '.');
    } else if (const auto* const bad = std::get_if<BadArgument>(&outcome)) {
        const std::string_view argument = arguments[bad->index];
        mistake(argument, kBadParameter, command + " takes " + takes + ", not " + quoted(argument) + '.');
    } else if (const auto* const unknown = std::get_if<Unimplemented>(&outcome)) {
        const std::string_view argument = arguments[unknown->index];
        mistake(argument, kUnimplementedCommand,
                command + " with " + quoted(argument) + " is not understood here.");
    }
}

void Reader::place(std::string_view where, Command command) {
    const auto byte = static_cast<std::size_t>(where.data() - source_.data());
    result_.commands.push_back({units_, unitsBefore(byte), std::move(command)});
}

void Reader::mistake(std::string_view where, int code, std::string message) {
    place(where, Mistake{code, std::move(message)});
}

} // namespace

EmbeddedText parseEmbeddedText(std::string text, const Delimiters& delimiters) {
    if (delimiters.prefix.empty() || delimiters.suffix.empty() ||
        text.find(delimiters.prefix) == std::string::npos) {
        EmbeddedText plain;
        plain.text = std::move(text);
        plain.delimiters = delimiters;
        return plain;
    }
    return Reader(text, delimiters).read();
}

} // namespace zqm::engine
