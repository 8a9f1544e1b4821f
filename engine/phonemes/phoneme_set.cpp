#include "engine/phonemes/phoneme_set.h"

#include "engine/phonemes/phoneme_tables.h"
#include "engine/protocol/phoneme_symbols.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <unordered_map>

namespace zqm::engine {

namespace {

const PhonemeTable* tableOf(std::string_view set) {
    const auto tables = phonemeTables();
    const auto table = std::find_if(tables.begin(), tables.end(),
                                    [&](const PhonemeTable& candidate) { return candidate.set == set; });
    return table == tables.end() ? nullptr : &*table;
}

// Rows that hold for a set, its own before those of its parents.
std::vector<std::span<const PhonemeRow>> rowsOf(std::string_view set) {
    std::vector<std::span<const PhonemeRow>> rows;
    for (const PhonemeTable* table = tableOf(set); table != nullptr; table = tableOf(table->parent)) {
        rows.push_back(table->rows);
    }
    rows.push_back(commonPhonemes());
    return rows;
}

using SymbolsByPhoneme = std::unordered_map<std::string_view, std::string_view>;

SymbolsByPhoneme withoutOverridden(std::string_view set) {
    SymbolsByPhoneme symbols;
    for (const std::span<const PhonemeRow> rows : rowsOf(set)) {
        for (const PhonemeRow& row : rows) {
            if (!row.symbols.ends_with(kWordEnd)) {
                symbols.emplace(row.phoneme, row.symbols);
            }
        }
    }
    return symbols;
}

// A long text asks for them often.
const SymbolsByPhoneme& symbolsByPhoneme(std::string_view set) {
    static std::map<std::string_view, SymbolsByPhoneme> cache;
    const PhonemeTable* const table = tableOf(set);
    const std::string_view name = table == nullptr ? std::string_view() : table->set;
    const auto found = cache.find(name);
    return found != cache.end() ? found->second : cache.emplace(name, withoutOverridden(name)).first->second;
}

std::optional<std::string_view> listed(std::string_view set, std::string_view phoneme) {
    const SymbolsByPhoneme& symbols = symbolsByPhoneme(set);
    const auto found = symbols.find(phoneme);
    return found == symbols.end() ? std::nullopt : std::optional(found->second);
}

// Behind a letter, a sign or digit names a variant.
bool isVariantSign(char sign) {
    return std::isalpha(static_cast<unsigned char>(sign)) == 0 && sign != '@' && sign != '&';
}

std::string_view withoutMarks(std::string_view symbols) {
    return symbols.substr(std::min(symbols.find_first_not_of("<>"), symbols.size()));
}

std::vector<std::string> parts(std::string_view text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream{std::string(text)};
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

} // namespace

std::optional<std::string> symbolsOf(std::string_view set, std::string_view phoneme) {
    if (const auto symbols = listed(set, phoneme)) {
        return std::string(*symbols);
    }
    if (phoneme.size() > 1 && isVariantSign(phoneme.back())) {
        return symbolsOf(set, phoneme.substr(0, phoneme.size() - 1));
    }
    for (std::size_t length = phoneme.empty() ? 0 : phoneme.size() - 1; length > 0; --length) {
        const auto first = listed(set, phoneme.substr(0, length));
        const auto rest = first ? symbolsOf(set, phoneme.substr(length)) : std::nullopt;
        if (rest) {
            return std::string(*first) + *rest;
        }
    }
    return std::nullopt;
}

std::vector<std::string> splitSymbols(std::string_view symbols) {
    std::vector<std::string> split;
    while (!symbols.empty()) {
        const std::string_view unmarked = withoutMarks(symbols);
        const protocol::PhonemeSymbol* const symbol = protocol::findPhonemeSymbol(unmarked);
        if (symbol == nullptr) {
            break;
        }
        const std::size_t length = symbols.size() - unmarked.size() + symbol->symbol.size();
        split.emplace_back(symbols.substr(0, length));
        symbols.remove_prefix(length);
    }
    return split;
}

bool isLanguageChange(std::string_view phoneme) {
    return phoneme.size() > 2 && phoneme.front() == '(' && phoneme.back() == ')';
}

std::string_view languageChangedTo(std::string_view phoneme) {
    return phoneme.substr(1, phoneme.size() - 2);
}

std::vector<std::int16_t> PhonemeOpcodes::next(std::string_view phoneme) {
    std::vector<std::int16_t> opcodes;
    if (isLanguageChange(phoneme)) {
        set_ = languageChangedTo(phoneme);
        return opcodes;
    }
    for (const std::string& symbol : splitSymbols(symbolsOf(set_, phoneme).value_or(std::string()))) {
        opcodes.push_back(protocol::findPhonemeSymbol(withoutMarks(symbol))->opcode);
    }
    return opcodes;
}

PhonemeSet::PhonemeSet(std::string name, const std::vector<std::string>& phonemes) : name_(std::move(name)) {
    const auto has = [&](std::string_view phoneme) {
        return std::find(phonemes.begin(), phonemes.end(), phoneme) != phonemes.end();
    };
    for (const std::span<const PhonemeRow> rows : rowsOf(name_)) {
        for (const PhonemeRow& row : rows) {
            const bool counts = row.symbols.ends_with(kWordEnd) || listed(name_, row.phoneme) == row.symbols;
            if (counts && has(row.phoneme)) {
                bySymbols_.emplace(row.symbols, row.phoneme);
            }
        }
    }
    for (const std::string& phoneme : phonemes) {
        if (const auto symbols = symbolsOf(name_, phoneme)) {
            bySymbols_.emplace(*symbols, phoneme);
        }
    }
    bySymbols_.erase("");
    for (const PhonemeRow& row : symbolSubstitutes()) {
        for (const std::string& substitute : parts(row.symbols, ' ')) {
            std::vector<std::string> sequence = parts(substitute, '+');
            if (std::all_of(sequence.begin(), sequence.end(), has)) {
                bySymbol_.emplace(row.phoneme, std::move(sequence));
                break;
            }
        }
    }
}

const std::string* PhonemeSet::find(const std::string& symbols) const {
    const auto found = bySymbols_.find(symbols);
    return found == bySymbols_.end() ? nullptr : &found->second;
}

const std::vector<std::string>& PhonemeSet::nearest(const std::string& symbol) const {
    static const std::vector<std::string> kNone;
    const auto found = bySymbol_.find(symbol);
    return found == bySymbol_.end() ? kNone : found->second;
}

} // namespace zqm::engine
