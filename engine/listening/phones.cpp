#include "engine/listening/phones.h"

#include "engine/phonemes/phoneme_set.h"
#include "engine/phonemes/phoneme_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace zqm::engine {

namespace {

// Where Americans differ, all such sounds of a word go the same way.
enum class Variation : std::uint8_t { None, ReducedVowel, LowBackVowel, VowelBeforeR, Count };

// A phoneme between two others, each empty for any, and what it is in phones. The first row that fits counts.
struct PhoneRow {
    std::string_view before;
    std::string_view phoneme;
    std::string_view after;
    std::string_view phones;
    Variation variation = Variation::None;
    std::string_view others{}; // where the word varies
};

// What the symbols of a phoneme don't tell, or tell otherwise than the model's dictionary.
constexpr PhoneRow kRows[] = {
    // Vowels
    {"", "3", "", "ER"},
    {"", "3:", "", "ER"},
    {"3", "r-", "", ""},
    {"3:", "r-", "", ""},
    {"", "r-", "", "ER"},
    {"", "VR", "", "ER"},
    {"", "IR", "", "ER"},
    {"", "@", "r", "ER"},
    {"", "@-", "", ""},
    {"", "I2", ";", "IY"},
    {"", "I", ";", "IY"},
    {"", "I2", "", "IH", Variation::ReducedVowel, "AH"},
    {"", "I#", "", "IH", Variation::ReducedVowel, "AH"},
    {"j", "U", "", "AH", Variation::ReducedVowel, "UH"},
    {"", "a", "r", "EH", Variation::VowelBeforeR, "AE"},
    {"", "0", "", "AA", Variation::LowBackVowel, "AO"},
    {"", "02", "", "AH", Variation::LowBackVowel, "AA"},
    {"", "O2", "", "AO", Variation::LowBackVowel, "AA"},
    {"", "o@", "", "AO R"},
    {"", "aI3", "", "AY ER", Variation::VowelBeforeR, "AY R"},
    {"", "aU@", "", "AW ER", Variation::VowelBeforeR, "AW R"},
    // Consonants
    {"", "n-", "", "AH N"},
    {"", "m-", "", "AH M"},
    {"", "N-", "", "AH NG"},
    {"", "l-", "", "AH L"},
    {"", "d#", "", "D"},
    {"", "d", "dZ", ""},
    {"", "x", "", "K"},
    {"k", "z", "", "S"},
    {"t", "z", "", "S"},
    {"s", "j", "", ""},
    {"S", "j", "", ""},
    {"z", "j", "", ""},
    {"Z", "j", "", ""},
};

// By opcode, the phones of what the symbols do tell; "" for what is silent.
constexpr std::array<std::string_view, 42> kPhones{
    "",   "",   "AE", "EY", "AO", "AH", "IY", "EH", "IH", "AY", "IH", "AA", "UW", "UH",
    "AH", "OW", "AW", "OY", "B",  "CH", "D",  "DH", "F",  "G",  "HH", "JH", "K",  "L",
    "M",  "N",  "NG", "P",  "R",  "S",  "SH", "T",  "TH", "V",  "W",  "Y",  "Z",  "ZH",
};

// A phoneme, and the set that it is of.
struct Phoneme {
    std::string_view set;
    std::string_view name;
};

// Between phonemes and between words.
constexpr std::array<char, 2> kSeparators{kPhonemeSeparator, ' '};

// Without stress, pauses and changes of language.
std::vector<Phoneme> phonemesIn(std::string_view text) {
    std::vector<Phoneme> phonemes;
    std::string_view set = kAmericanSet;
    while (!text.empty()) {
        std::string_view name = text.substr(0, text.find_first_of({kSeparators.data(), kSeparators.size()}));
        text.remove_prefix(std::min(text.size(), name.size() + 1));
        while (name.starts_with("_:")) {
            name.remove_prefix(2);
        }
        name.remove_prefix(std::min(name.size(), name.find_first_not_of("',%=")));
        if (isLanguageChange(name)) {
            set = languageChangedTo(name);
        } else if (!name.empty()) {
            phonemes.push_back({set, name});
        }
    }
    return phonemes;
}

const PhoneRow* rowFor(std::string_view before, const Phoneme& phoneme, std::string_view after) {
    const auto fits = [](std::string_view wanted, std::string_view name) {
        return wanted.empty() || wanted == name;
    };
    const auto* const row = std::find_if(std::begin(kRows), std::end(kRows), [&](const PhoneRow& candidate) {
        return candidate.phoneme == phoneme.name && fits(candidate.before, before) &&
               fits(candidate.after, after);
    });
    return phoneme.set != kAmericanSet || row == std::end(kRows) ? nullptr : row;
}

std::string phonesOfSymbols(const Phoneme& phoneme) {
    std::string phones;
    for (const std::int16_t opcode : PhonemeOpcodes(std::string(phoneme.set)).next(phoneme.name)) {
        const std::string_view phone = kPhones.at(static_cast<std::size_t>(opcode));
        phones += phones.empty() || phone.empty() ? "" : " ";
        phones += phone;
    }
    return phones;
}

// An r is no sound of its own behind a vowel that has its colour.
void append(std::string& pronunciation, std::string_view phones) {
    if (phones == "R" && (pronunciation.ends_with("ER") || pronunciation.ends_with(" R"))) {
        return;
    }
    pronunciation += pronunciation.empty() || phones.empty() ? "" : " ";
    pronunciation += phones;
}

// A phoneme in phones.
struct Sound {
    std::string phones;
    const PhoneRow* row = nullptr;
};

std::string pronunciation(const std::vector<Sound>& sounds, std::size_t varied) {
    std::string text;
    for (const Sound& sound : sounds) {
        const bool varies =
            sound.row != nullptr && ((varied >> static_cast<std::size_t>(sound.row->variation)) & 1U) != 0;
        append(text, varies ? sound.row->others : sound.phones);
    }
    return text;
}

} // namespace

std::vector<std::string> phonesOf(std::string_view phonemes) {
    const std::vector<Phoneme> names = phonemesIn(phonemes);
    std::vector<Sound> sounds;
    for (std::size_t index = 0; index < names.size(); ++index) {
        const std::string_view before = index == 0 ? "" : names[index - 1].name;
        const std::string_view after = index + 1 == names.size() ? "" : names[index + 1].name;
        const PhoneRow* const row = rowFor(before, names[index], after);
        sounds.push_back({row != nullptr ? std::string(row->phones) : phonesOfSymbols(names[index]), row});
    }
    std::vector<std::string> pronunciations;
    constexpr auto kVariations = static_cast<std::size_t>(Variation::Count);
    for (std::size_t varied = 0; varied < 1U << kVariations; varied += 2) { // the first doesn't vary
        std::string candidate = pronunciation(sounds, varied);
        if (!candidate.empty() &&
            std::find(pronunciations.begin(), pronunciations.end(), candidate) == pronunciations.end()) {
            pronunciations.push_back(std::move(candidate));
        }
    }
    return pronunciations;
}

} // namespace zqm::engine
