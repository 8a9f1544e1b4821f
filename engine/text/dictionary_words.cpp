#include "engine/text/dictionary_words.h"

#include <algorithm>
#include <array>

namespace zqm::engine {

namespace {

// Words that ICU parts, because its dictionary lacks them or weighs their parts higher.
constexpr std::array kPartedWords{
    // Chinese
    std::u32string_view(U"图书馆"), std::u32string_view(U"电影院"), std::u32string_view(U"火车站"),
    std::u32string_view(U"飞机场"), std::u32string_view(U"办公室"), std::u32string_view(U"互联网"),
    std::u32string_view(U"出租车"), std::u32string_view(U"地铁站"), std::u32string_view(U"博物馆"),
    std::u32string_view(U"咖啡馆"), std::u32string_view(U"自行车"), std::u32string_view(U"电视机"),
    std::u32string_view(U"照相机"), std::u32string_view(U"笔记本"), std::u32string_view(U"便利店"),
    std::u32string_view(U"服务员"), std::u32string_view(U"普通话"), std::u32string_view(U"怎么样"),
    std::u32string_view(U"矿泉水"), std::u32string_view(U"体育馆"), std::u32string_view(U"教学楼"),
    std::u32string_view(U"运动员"), std::u32string_view(U"科学家"), std::u32string_view(U"艺术家"),
    std::u32string_view(U"音乐会"), std::u32string_view(U"动物园"), std::u32string_view(U"幼儿园"),
    std::u32string_view(U"身份证"), std::u32string_view(U"计算机"),
    // Thai
    std::u32string_view(U"ผลไม้"), std::u32string_view(U"โรงพยาบาล"), std::u32string_view(U"น้ำแข็ง"),
    std::u32string_view(U"เครื่องบิน"), std::u32string_view(U"ห้องนอน"), std::u32string_view(U"วันนี้"),
    std::u32string_view(U"พรุ่งนี้"), std::u32string_view(U"เมื่อวาน"), std::u32string_view(U"ไม้ขีด"),
    std::u32string_view(U"น่ารัก"), std::u32string_view(U"สนามบิน"), std::u32string_view(U"ตู้เย็น")};

// A Chinese pronoun and a verb, adverb or particle are two words, but stand in the dictionary as one.
constexpr std::u32string_view kPronouns = U"我你您他她它";
constexpr std::u32string_view kNeverPartOfPronoun = U"是在去想要会會有爱愛来來看说說做买買住叫能不也都很的";

bool contains(std::u32string_view set, char32_t character) {
    return set.find(character) != std::u32string_view::npos;
}

void joinParts(std::u32string_view text, std::vector<bool>& starts, std::size_t at) {
    for (const std::u32string_view word : kPartedWords) {
        if (text.substr(at, word.size()) == word) {
            const auto begin = starts.begin() + static_cast<std::ptrdiff_t>(at);
            std::fill(begin + 1, begin + static_cast<std::ptrdiff_t>(word.size()), false);
            starts[at + word.size()] = true; // its last part may stand in the dictionary with what follows
        }
    }
}

void partPronoun(std::u32string_view text, std::vector<bool>& starts, std::size_t at) {
    std::size_t end = at + 1;
    while (!starts[end]) {
        ++end;
    }
    if (end < at + 2 || !contains(kPronouns, text[at]) || !contains(kNeverPartOfPronoun, text[at + 1])) {
        return;
    }
    starts[at + 1] = true;
    if (contains(kPronouns, text[end - 1])) {
        starts[end - 1] = true;
    }
}

} // namespace

void correctDictionaryWords(std::u32string_view text, std::vector<bool>& starts) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (starts[at]) {
            joinParts(text, starts, at);
            partPronoun(text, starts, at);
        }
    }
}

} // namespace zqm::engine
