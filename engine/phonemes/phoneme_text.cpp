#include "engine/phonemes/phoneme_text.h"

#include "engine/phonemes/phoneme_tables.h"
#include "engine/text/characters.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zqm::engine {

namespace {

constexpr std::string_view kPause = "%";

enum class Stress { None, Secondary, Primary };

// A phoneme or a symbol, as it stands in a word.
struct Unit {
    std::vector<std::string> symbols; // with their length marks
    Stress stress = Stress::None;
    bool begins = false; // a syllable break stands before it
    std::size_t at = 0;  // code point
};

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const std::string_view part = text.substr(0, text.find(separator));
        text.remove_prefix(std::min(text.size(), part.size() + 1));
        if (!part.empty()) {
            parts.push_back(part);
        }
    }
    return parts;
}

Stress takeStress(std::string_view& phoneme) {
    Stress stress = Stress::None;
    while (!phoneme.empty() && std::string_view("',%=").find(phoneme.front()) != std::string_view::npos) {
        stress = phoneme.front() == '\''  ? Stress::Primary
                 : phoneme.front() == ',' ? Stress::Secondary
                                          : stress;
        phoneme.remove_prefix(1);
    }
    return stress;
}

// A pause stands before a word without a separator.
bool takePause(std::string_view& phoneme) {
    constexpr std::string_view kPauseName = "_:";
    if (!phoneme.starts_with(kPauseName)) {
        return false;
    }
    phoneme.remove_prefix(kPauseName.size());
    return true;
}

// Symbols from a place on that might be read as one phoneme.
struct Ahead {
    std::vector<std::string> symbols;
    bool endsWord = false; // nothing follows them
};

Ahead lookAhead(const std::vector<Unit>& units, std::size_t from) {
    Ahead ahead{units[from].symbols};
    std::size_t next = from + 1;
    for (; next < units.size() && ahead.symbols.size() < PhonemeSet::kLongest; ++next) {
        if (units[next].stress != Stress::None || units[next].begins) {
            break;
        }
        ahead.symbols.insert(ahead.symbols.end(), units[next].symbols.begin(), units[next].symbols.end());
    }
    ahead.endsWord = next == units.size();
    return ahead;
}

struct Match {
    std::size_t symbols = 0; // how many
    const std::string* phoneme = nullptr;
};

// The longest; none when no phoneme begins so.
Match match(const Ahead& ahead, const PhonemeSet& set) {
    Match longest;
    std::string key;
    for (std::size_t count = 1; count <= ahead.symbols.size(); ++count) {
        key += ahead.symbols[count - 1];
        const bool endsWord = ahead.endsWord && count == ahead.symbols.size();
        const std::string* const final = endsWord ? set.find(key + kWordEnd) : nullptr;
        const std::string* const phoneme = final != nullptr ? final : set.find(key);
        if (phoneme != nullptr) {
            longest = {count, phoneme};
        }
    }
    return longest;
}

std::string wordText(std::vector<Unit> units, const PhonemeSet& set) {
    const bool stressed =
        std::any_of(units.begin(), units.end(), [](const Unit& unit) { return unit.stress != Stress::None; });
    std::string text(stressed ? "_" : "~");
    for (std::size_t index = 0; index < units.size(); ++index) {
        const Unit& unit = units[index];
        text += unit.begins ? "=" : "";
        text += unit.stress == Stress::Primary ? "1" : unit.stress == Stress::Secondary ? "2" : "";
        for (const std::string& symbol : unit.symbols) {
            text += symbol;
        }
        if (index + 1 < units.size()) {
            units[index + 1].begins = match(lookAhead(units, index), set).symbols > unit.symbols.size();
        }
    }
    return text;
}

} // namespace

std::string symbolText(std::string_view phonemes, const PhonemeSet& set) {
    std::string language = set.name();
    std::string text;
    for (const std::string_view word : split(phonemes, ' ')) {
        std::vector<Unit> units;
        const auto endWord = [&] {
            text += text.empty() || units.empty() ? "" : " ";
            text += units.empty() ? "" : wordText(std::move(units), set);
            units.clear();
        };
        for (std::string_view phoneme : split(word, kPhonemeSeparator)) {
            while (takePause(phoneme)) {
                endWord();
                text += kPause;
            }
            const Stress stress = takeStress(phoneme);
            if (isLanguageChange(phoneme)) {
                language = languageChangedTo(phoneme);
                continue;
            }
            std::vector<std::string> symbols =
                splitSymbols(symbolsOf(language, phoneme).value_or(std::string()));
            if (!symbols.empty()) {
                units.push_back({std::move(symbols), stress, false, 0});
            }
        }
        endWord();
    }
    return text;
}

namespace {

constexpr char kNoPunctuation = '\0';

// Symbols, read one after another.
class SymbolReader {
public:
    SymbolReader(std::u32string_view symbols, const PhonemeSet& set) : symbols_(symbols), set_(set) {}

    PhonemeInput read() {
        while (at_ < symbols_.size()) {
            readOne();
        }
        endWord();
        return std::move(input_);
    }

private:
    void readOne() {
        const char32_t character = symbols_[at_];
        if (const protocol::PhonemeSymbol* const symbol = symbolAt(symbols_, at_)) {
            addSymbol(*symbol);
            at_ += symbol->symbol.size();
            return;
        }
        if (!readMark(character) && !readBetweenWords(character)) {
            input_.mistakes.push_back({at_, "This is not a phoneme symbol."});
        }
        ++at_;
    }

    void addSymbol(const protocol::PhonemeSymbol& symbol) {
        Unit unit;
        unit.symbols = {lengthMarks_ + std::string(symbol.symbol)};
        unit.begins = breakBefore_;
        unit.at = at_;
        if (protocol::isVowel(symbol) || !lengthMarks_.empty()) {
            unit.stress = std::exchange(stress_, Stress::None);
        }
        lengthMarks_.clear();
        breakBefore_ = false;
        word_.push_back(std::move(unit));
    }

    bool readMark(char32_t character) {
        switch (character) {
        case U'1':
            stress_ = Stress::Primary;
            return true;
        case U'2':
            stress_ = Stress::Secondary;
            return true;
        case U'=':
            breakBefore_ = true;
            return true;
        case U'<':
        case U'>':
            lengthMarks_ += static_cast<char>(character);
            return true;
        case U'/':
        case U'\\':
            return true; // espeak-ng has no pitch for one phoneme
        case U'_':
        case U'~':
        case U'+':
            endWord();
            kind_ = character;
            return true;
        default:
            return false;
        }
    }

    bool readBetweenWords(char32_t character) {
        if (isBlank(character) || isQuote(character)) {
            endWord();
            return true;
        }
        const char punctuation = punctuationFor(character);
        if (punctuation == kNoPunctuation) {
            return false;
        }
        endWord();
        input_.words.push_back({"", punctuation, at_});
        return true;
    }

    // Unless its writer took the stress away or placed it, a word bears it on its first full vowel.
    void placeStress() {
        const auto isStressed = [](const Unit& unit) { return unit.stress != Stress::None; };
        if (kind_ == U'~') {
            for (Unit& unit : word_) {
                unit.stress = Stress::None;
            }
            return;
        }
        if (std::any_of(word_.begin(), word_.end(), isStressed)) {
            return;
        }
        const auto vowel = [](const Unit& unit) {
            const std::string_view symbol = unit.symbols.front();
            const auto* const found =
                protocol::findPhonemeSymbol(symbol.substr(symbol.find_first_not_of("<>")));
            return protocol::isVowel(*found);
        };
        const auto full = [&](const Unit& unit) {
            return vowel(unit) && !unit.symbols.front().ends_with("AX") &&
                   !unit.symbols.front().ends_with("IX");
        };
        auto bearer = std::find_if(word_.begin(), word_.end(), full);
        if (bearer == word_.end()) {
            bearer = std::find_if(word_.begin(), word_.end(), vowel);
        }
        if (bearer != word_.end()) {
            bearer->stress = Stress::Primary;
        }
    }

    void endWord() {
        placeStress();
        std::string mnemonics;
        for (std::size_t index = 0; index < word_.size();) {
            const Unit& unit = word_[index];
            const Match found = match(lookAhead(word_, index), set_);
            std::string stress = stressSign(unit.stress);
            for (const std::string& phoneme : found.phoneme != nullptr
                                                  ? std::vector<std::string>{*found.phoneme}
                                                  : nearest(unit.symbols.front())) {
                mnemonics += mnemonics.empty() ? "" : "|";
                mnemonics += std::exchange(stress, "") + phoneme;
            }
            index += std::max<std::size_t>(found.symbols, 1);
        }
        if (!mnemonics.empty()) {
            input_.words.push_back({std::move(mnemonics), kNoPunctuation, word_.front().at});
        }
        word_.clear();
        stress_ = Stress::None;
        lengthMarks_.clear();
        breakBefore_ = false;
        kind_ = U'_';
    }

    [[nodiscard]] const char* stressSign(Stress stress) const {
        if (stress == Stress::Primary) {
            return kind_ == U'+' ? "''" : "'";
        }
        return stress == Stress::Secondary ? "," : "";
    }

    // Marks that tell nothing apart in this set are no matter.
    [[nodiscard]] std::vector<std::string> nearest(std::string symbol) const {
        symbol.erase(0, symbol.find_first_not_of("<>"));
        const std::string* const phoneme = set_.find(symbol);
        return phoneme != nullptr ? std::vector<std::string>{*phoneme} : set_.nearest(symbol);
    }

    static bool isQuote(char32_t character) {
        return std::u32string_view(U"\"'()-\u2013\u2014\u2018\u2019\u201C\u201D").find(character) !=
               std::u32string_view::npos;
    }

    std::u32string_view symbols_;
    const PhonemeSet& set_;
    std::size_t at_ = 0;
    std::vector<Unit> word_;
    char32_t kind_ = U'_';
    Stress stress_ = Stress::None;
    std::string lengthMarks_;
    bool breakBefore_ = false;
    PhonemeInput input_;
};

} // namespace

char punctuationFor(char32_t character) {
    struct Mark {
        char32_t character;
        char punctuation;
    };
    static constexpr auto kMarks = std::to_array<Mark>({
        {U'.', '.'},      {U',', ','},      {U';', ';'},      {U':', ':'},      {U'!', '!'},
        {U'?', '?'},      {U'\u2026', '.'}, {U'\u3002', '.'}, {U'\uFF0E', '.'}, {U'\u0964', '.'},
        {U'\u0965', '.'}, {U'\u06D4', '.'}, {U'\u1362', '.'}, {U'\u0589', '.'}, {U'\u104B', '.'},
        {U'\u060C', ','}, {U'\u3001', ','}, {U'\uFF0C', ','}, {U'\u104A', ','}, {U'\u061B', ';'},
        {U'\uFF1B', ';'}, {U'\uFF1A', ':'}, {U'\uFF01', '!'}, {U'\uFF1F', '?'}, {U'\u061F', '?'},
        {U'\u037E', '?'},
    });
    const auto* const mark = std::find_if(kMarks.begin(), kMarks.end(), [&](const Mark& candidate) {
        return candidate.character == character;
    });
    return mark == kMarks.end() ? kNoPunctuation : mark->punctuation;
}

const protocol::PhonemeSymbol* symbolAt(std::u32string_view symbols, std::size_t at) {
    constexpr std::size_t kLongestSymbol = 2;
    constexpr char32_t kAsciiEnd = 0x80;
    std::string ahead;
    for (const char32_t character : symbols.substr(at, kLongestSymbol)) {
        ahead += character < kAsciiEnd ? static_cast<char>(character) : '\0';
    }
    return protocol::findPhonemeSymbol(ahead);
}

PhonemeInput phonemeInput(std::u32string_view symbols, const PhonemeSet& set) {
    return SymbolReader(symbols, set).read();
}

} // namespace zqm::engine
