#include "tests/support/phoneme_check.h"

#include "tests/support/utf16.h"

#include <algorithm>

#include <unicode/uchar.h>
#include <unicode/utf16.h>

namespace zqm::support {

namespace {

constexpr std::int64_t kSilence = 0;
constexpr std::int64_t kOpcodes = 42;

bool hasLetterOrDigit(const std::string& word) {
    const std::u16string text = toUtf16(word);
    for (std::size_t at = 0; at < text.size();) {
        UChar32 character = 0;
        U16_NEXT(text, at, text.size(), character);
        if (u_isalnum(character) != 0) {
            return true;
        }
    }
    return false;
}

} // namespace

std::vector<std::string> phonemeFaults(std::span<const std::string> words,
                                       std::span<const ToldPhoneme> phonemes) {
    std::vector<std::string> faults;
    if (phonemes.empty() || phonemes.front().opcode != kSilence || phonemes.back().opcode != kSilence) {
        faults.emplace_back("no silence at the beginning or end");
    }
    std::vector<bool> isSpoken(words.size());
    for (const ToldPhoneme& phoneme : phonemes) {
        if (phoneme.opcode < 0 || phoneme.opcode >= kOpcodes) {
            faults.push_back("no opcode: " + std::to_string(phoneme.opcode));
        }
        if (phoneme.opcode != kSilence && phoneme.word > 0 && phoneme.word <= words.size()) {
            isSpoken[phoneme.word - 1] = true;
        }
    }
    for (std::size_t word = 0; word < words.size(); ++word) {
        if (!isSpoken[word] && hasLetterOrDigit(words[word])) {
            faults.push_back("no phoneme of word " + std::to_string(word) + ", " + words[word]);
        }
    }
    return faults;
}

} // namespace zqm::support
