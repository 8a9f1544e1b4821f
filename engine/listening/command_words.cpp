#include "engine/listening/command_words.h"

#include "engine/listening/command_text.h"
#include "engine/listening/spoken_number.h"
#include "engine/listening/word_pronunciations.h"
#include "engine/text/characters.h"
#include "engine/text/utf8.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

namespace zqm::engine {

namespace {

// The longest word that may stand in a dictionary; longer ones are said in parts.
constexpr std::size_t kLongestWord = 40;

// What more would cost the recognizer is worth no rare way to say a number.
constexpr std::size_t kMostPronunciations = 40;

// Where a sign stands, between blanks or ends of the text, letters, digits and other signs.
enum class Side : std::uint8_t { Any, Blank, Letter, Digit, Text }; // text: a letter or a digit

// A sign as it is said between two sides, parted by commas.
struct SignRow {
    char32_t sign;
    Side before;
    Side behind;
    std::string_view words;
    bool mayBeSilent = false;
};

// The first that fits counts. What is in no row is silent.
constexpr SignRow kSigns[] = {
    {U'&', Side::Any, Side::Any, "and"},
    {U'+', Side::Any, Side::Any, "plus"},
    {U'=', Side::Any, Side::Any, "equals"},
    {U'@', Side::Any, Side::Any, "at"},
    {U'%', Side::Any, Side::Any, "percent"},
    {U'#', Side::Letter, Side::Blank, "sharp"},
    {U'#', Side::Any, Side::Digit, "number,hash,pound"},
    {U'#', Side::Any, Side::Any, "hash,hashtag,pound"},
    {U'-', Side::Blank, Side::Digit, "minus,negative"},
    {U'-', Side::Digit, Side::Digit, "to,minus,dash", true},
    {U'.', Side::Text, Side::Text, "dot,point", true},
    {U':', Side::Digit, Side::Digit, "to", true},
    {U'/', Side::Any, Side::Any, "slash", true},
    {U'\u2044', Side::Any, Side::Any, "slash", true},
    {U'\\', Side::Any, Side::Any, "backslash", true},
    {U'*', Side::Digit, Side::Digit, "times"},
    {U'*', Side::Any, Side::Any, "star,asterisk", true},
    {U'_', Side::Any, Side::Any, "underscore", true},
    {U'~', Side::Any, Side::Any, "tilde", true},
    {U'<', Side::Any, Side::Any, "less than", true},
    {U'>', Side::Any, Side::Any, "greater than", true},
    {U'\u00D7', Side::Any, Side::Any, "times,by"},
    {U'\u00F7', Side::Any, Side::Any, "divided by"},
    {U'\u00B1', Side::Any, Side::Any, "plus minus,plus or minus"},
    {U'\u00B0', Side::Any, Side::Any, "degrees"},
    {U'\u00A7', Side::Any, Side::Any, "section"},
    {U'$', Side::Any, Side::Any, "dollars,dollar"},
    {U'\u20AC', Side::Any, Side::Any, "euros,euro"},
    {U'\u00A3', Side::Any, Side::Any, "pounds,pound"},
    {U'\u00A5', Side::Any, Side::Any, "yen"},
};

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    while (!text.empty()) {
        parts.emplace_back(text.substr(0, text.find(separator)));
        text.remove_prefix(std::min(text.size(), parts.back().size() + 1));
    }
    return parts;
}

class Reader {
public:
    Reader(std::u32string text, const WordPronunciations& pronunciations)
        : text_(std::move(text)), pronunciations_(pronunciations) {}

    CommandWords read() {
        if (std::any_of(text_.begin(), text_.end(), isForeignLetter)) {
            problem_ = "it has letters that the recognizer doesn't know: it understands English";
        }
        while (at_ < text_.size() && problem_.empty()) {
            if (isLetter(at_) || startsShortened()) {
                takeWord();
            } else if (const auto number = numberAt(text_, at_)) {
                takeNumber(*number);
            } else {
                takeSign();
            }
        }
        // One that may be silent is said where nothing else would be.
        if (problem_.empty() && sign_ != nullptr && (signStandsAlone_ || words_.empty())) {
            const SignRow& sign = *std::exchange(sign_, nullptr);
            say(nameOf(sign), readingsOf(sign));
        }
        if (problem_.empty() && words_.empty()) {
            problem_ = "it has no words";
        }
        return problem_.empty() ? CommandWords(std::move(words_)) : CommandWords(std::move(problem_));
    }

private:
    [[nodiscard]] bool isLetter(std::size_t at) const {
        return at < text_.size() && isLetterOrNumber(text_[at]) && !isDigit(text_[at]);
    }
    [[nodiscard]] bool isInWord(std::size_t at) const {
        return isLetter(at) || (at < text_.size() && isMark(text_[at]));
    }

    // 'cause, 'em
    [[nodiscard]] bool startsShortened() const {
        return text_[at_] == U'\'' && isLetter(at_ + 1) && (at_ == 0 || !isInWord(at_ - 1));
    }

    // Where words end that begin here: that of letters alone, then those with what joins it to others.
    [[nodiscard]] std::vector<std::size_t> wordEnds() const {
        std::vector<std::size_t> ends;
        const std::size_t limit = std::min(text_.size(), at_ + kLongestWord);
        for (std::size_t end = at_ + 1;; ++end) {
            while (end < limit && (isInWord(end) || (text_[end] == U'\'' && isLetter(end + 1)))) {
                ++end;
            }
            ends.push_back(end);
            if (end + 1 >= limit || !isLetter(end + 1) || (text_[end] != U'-' && text_[end] != U'.')) {
                return ends;
            }
        }
    }

    // The longest that is listed, with its full stop if it has one; but no part of initials, as b.c. of
    // b.b.c.
    void takeWord() {
        const std::vector<std::size_t> ends = wordEnds();
        if (at_ > 0 && text_[at_ - 1] == U'\u00B0' && ends.front() == at_ + 1 && takeScale()) {
            return;
        }
        const bool isBehindInitial = at_ > 1 && text_[at_ - 1] == U'.' && isInWord(at_ - 2);
        for (auto end = ends.rbegin(); end != ends.rend(); ++end) {
            const bool hasFullStop = *end < text_.size() && text_[*end] == U'.' && !isLetter(*end + 1);
            for (std::size_t length = *end - at_ + (hasFullStop ? 1 : 0); length >= *end - at_; --length) {
                const std::u32string_view word = std::u32string_view(text_).substr(at_, length);
                if (word.find(U'.') < *end - at_ && (*end != ends.back() || isBehindInitial)) {
                    continue;
                }
                std::vector<std::string> listed = pronunciations_.listed(word);
                if (!listed.empty()) {
                    at_ += length;
                    add(toUtf8(word), std::move(listed));
                    return;
                }
            }
        }
        if (text_[at_] == U'\'') {
            ++at_; // a quotation mark
            return;
        }
        const std::u32string_view word = std::u32string_view(text_).substr(at_, ends.front() - at_);
        at_ = ends.front();
        add(toUtf8(word), pronunciations_.of(word));
    }

    // °C
    bool takeScale() {
        const std::string letter = toUtf8(std::u32string_view(text_).substr(at_, 1));
        const char* const name = letter == "c" ? "celsius" : letter == "f" ? "fahrenheit" : nullptr;
        if (name != nullptr) {
            ++at_;
            say("\u00B0" + letter, {{letter}, {name}});
        }
        return name != nullptr;
    }

    void takeNumber(const SpokenNumber& number) {
        const std::u32string_view text = std::u32string_view(text_).substr(at_, number.length);
        const bool isPart =
            behindNumber_ == at_ && text.find_first_of(U"/\u2044") != std::u32string_view::npos;
        at_ += number.length;
        behindNumber_ = at_ + 1;
        if (!isPart) {
            say(toUtf8(text), number.readings);
            return;
        }
        std::vector<Reading> readings; // two and a half
        for (Reading reading : number.readings) {
            readings.push_back(reading);
            reading.insert(reading.begin(), "and");
            readings.push_back(std::move(reading));
        }
        say("and " + toUtf8(text), readings);
    }

    [[nodiscard]] bool isAt(Side side, std::size_t at) const {
        const bool isOutside = at >= text_.size(); // also before the first
        switch (side) {
        case Side::Blank:
            return isOutside || isBlank(text_[at]);
        case Side::Letter:
            return isLetter(at);
        case Side::Digit:
            return !isOutside && isDigit(text_[at]);
        case Side::Text:
            return isLetter(at) || (!isOutside && isDigit(text_[at]));
        case Side::Any:
            break;
        }
        return true;
    }

    [[nodiscard]] bool isInitial(std::size_t at) const {
        return isLetter(at) && !isInWord(at - 1) && !isInWord(at + 1);
    }

    void takeSign() {
        const std::size_t at = at_++;
        const auto* const row =
            std::find_if(std::begin(kSigns), std::end(kSigns), [&](const SignRow& candidate) {
                return candidate.sign == text_[at] && isAt(candidate.before, at - 1) &&
                       isAt(candidate.behind, at + 1);
            });
        if (row == std::end(kSigns) || (isInitial(at - 1) && row->sign == U'.' && isInitial(at + 1))) {
            return;
        }
        if (row->mayBeSilent) {
            sign_ = row;
            signStandsAlone_ = isAt(Side::Blank, at - 1) && isAt(Side::Blank, at + 1);
        } else {
            say(nameOf(*row), readingsOf(*row));
        }
    }

    static std::string nameOf(const SignRow& row) {
        std::string name = toUtf8(std::u32string_view(&row.sign, 1));
        name += row.words.substr(0, row.words.find(','));
        return name;
    }

    static std::vector<Reading> readingsOf(const SignRow& row) {
        std::vector<Reading> readings;
        for (const std::string& words : split(row.words, ',')) {
            readings.push_back(split(words, ' '));
        }
        return readings;
    }

    std::vector<std::string> pronunciationsOf(const std::vector<Reading>& readings) {
        std::vector<std::string> pronunciations;
        for (const Reading& reading : readings) {
            addPronunciations(pronunciations, pronunciations_.of(reading));
        }
        return pronunciations;
    }

    void say(const std::string& text, const std::vector<Reading>& readings) {
        add(text, pronunciationsOf(readings));
    }

    void add(std::string text, std::vector<std::string> pronunciations) {
        if (pronunciations.empty()) {
            problem_ = "it isn't known how \"" + text + "\" is pronounced";
            return;
        }
        if (sign_ != nullptr) {
            const SignRow& sign = *std::exchange(sign_, nullptr);
            text.insert(0, nameOf(sign) + ' ');
            const std::vector<std::string> silent = pronunciations;
            for (const std::string& said : pronunciationsOf(readingsOf(sign))) {
                for (const std::string& phones : silent) {
                    addPronunciations(pronunciations, {bothSaid(said, phones)});
                }
            }
        }
        pronunciations.resize(std::min(pronunciations.size(), kMostPronunciations));
        words_.push_back({std::move(text), std::move(pronunciations)});
    }

    std::u32string text_;
    const WordPronunciations& pronunciations_;
    std::size_t at_ = 0;
    std::optional<std::size_t> behindNumber_; // and the blank behind it: where that ends
    std::vector<CommandWord> words_;
    const SignRow* sign_ = nullptr; // that may be said before the next word
    bool signStandsAlone_ = false;
    std::string problem_;
};

} // namespace

CommandWords CommandReader::wordsOf(const std::string& command) const {
    const WordPronunciations pronunciations(dictionary_, transcriber_);
    return Reader(commandText(command), pronunciations).read();
}

} // namespace zqm::engine
