#include "tests/support/generated_text.h"

#include <array>
#include <span>
#include <string_view>

namespace zqm::support {

namespace {

using Pieces = std::span<const std::u16string_view>;

// Runs of characters that words are made of, by script; consecutive code points.
struct Letters {
    char32_t first;
    std::size_t count;
};

constexpr std::array kLetters = {
    Letters{U'a', 26},  Letters{U'A', 26},     Letters{U'a', 26},
    Letters{U'à', 23},  Letters{U'α', 25},     Letters{U'а', 32},
    Letters{U'א', 27},  Letters{U'ب', 16},     Letters{U'अ', 10},
    Letters{U'क', 36},  Letters{U'ก', 46},     Letters{U'ა', 33},
    Letters{U'ա', 38},  Letters{U'가', 11172}, Letters{U'あ', 82},
    Letters{U'ア', 82}, Letters{U'一', 20000}, Letters{U'அ', 6},
    Letters{U'𝒳', 20},  Letters{U'𐌰', 26},     Letters{U'\U00020000', 40000},
    Letters{U'0', 10},  Letters{U'٠', 10},
};

constexpr std::array<std::u16string_view, 10> kMarks = {
    u"\u0301", u"\u0308", u"\u0323", u"\u20DD", u"\u093F",
    u"\u094D", u"\u0E31", u"\u0E48", u"\u064E", u"\uFE0F",
};

constexpr std::array<std::u16string_view, 22> kEmoji = {
    u"😀",
    u"👍🏽",
    u"👨‍👩‍👧‍👦",
    u"🏳️‍🌈",
    u"🇩🇪",
    u"🇯🇵🇫🇷",
    u"1️⃣",
    u"#️⃣",
    u"❤️",
    u"☎",
    u"👩‍🚀",
    u"🏴󠁧󠁢󠁳󠁣󠁴󠁿",
    u"\U0001F1E6",
    u"👋🏿",
    u"✂️",
    u"🧑🏻‍🤝‍🧑🏿",
    u"🎉",
    u"©",
    u"™",
    u"\u200D👩",
    u"😀\u200D",
    u"\U0001F3FD",
};

constexpr std::array<std::u16string_view, 24> kNumbers = {
    u"25",   u"1,000", u"$25.50", u"10:30",   u"2026-11-20", u"50%", u"-4", u"+49 30 123",
    u"1/2",  u"€9,99", u"20°",    u"3.14159", u"1.2.3.4",    u"12€", u"7‰", u"1066",
    u"0x1F", u"1e9",   u"½",      u"Ⅻ",       u"²",          u"٣٤",  u"−7", u"1,,000",
};

constexpr std::array<std::u16string_view, 20> kTokens = {
    u"don't",    u"e-mail", u"U.S.A.",         u"e.g.",     u"AT&T",
    u"C++",      u"C#",     u"http://x.org/a", u"www.x.de", u"me@example.com",
    u"#hashtag", u"@name",  u"notes.txt",      u"https://", u"a_b",
    u"and/or",   u"l’eau",  u"rock'n'roll",    u"@",        u"http",
};

constexpr std::array<std::u16string_view, 34> kPunctuation = {
    u".", u",",  u"!", u"?", u";", u":",  u"…",  u"...", u"—",  u"–", u"-",  u"'",
    u"’", u"\"", u"„", u"“", u"(", u")",  u"[",  u"]",   u"{",  u"/", u"\\", u"&",
    u"#", u"@",  u"%", u"+", u"=", u"。", u"、", u"؟",   u"。", u"*",
};

constexpr std::array<std::u16string_view, 12> kBlanks = {
    u" ", u" ", u" ", u" ", u"  ", u"\n", u"\n\n", u"\t", u"\r\n", u"\u00A0", u"\u3000", u"\u2028",
};

constexpr std::array<std::u16string_view, 12> kInvisible = {
    u"\u200B", u"\u200C", u"\u200D",
    u"\u00AD", u"\u200F", u"\u202E",
    u"\uFEFF", u"\u2060", std::u16string_view(u"\0", 1),
    u"\u0007", u"\uFFFD", u"\uE000",
};

void append(std::u16string& text, char32_t character) {
    if (character < 0x10000) {
        text += static_cast<char16_t>(character);
    } else {
        text += static_cast<char16_t>(0xD7C0 + (character >> 10));
        text += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
    }
}

} // namespace

std::size_t TextGenerator::below(std::size_t limit) {
    return static_cast<std::size_t>(random_() % limit);
}

std::u16string TextGenerator::next(std::size_t length) {
    std::u16string text;
    while (text.size() < length) {
        appendPiece(text);
    }
    return text;
}

void TextGenerator::appendPiece(std::u16string& text) {
    const auto one = [this](Pieces pieces) { return pieces[below(pieces.size())]; };
    const auto letters = [this, &text] {
        const Letters& script = kLetters[below(kLetters.size())];
        for (std::size_t count = 1 + below(9); count > 0; --count) {
            append(text, script.first + static_cast<char32_t>(below(script.count)));
        }
    };
    const std::size_t kind = below(100);
    if (kind < 35) {
        letters();
    } else if (kind < 65) {
        text += one(kBlanks);
    } else if (kind < 75) {
        text += one(kPunctuation);
    } else if (kind < 81) {
        text += one(kNumbers);
    } else if (kind < 87) {
        text += one(kEmoji);
    } else if (kind < 92) {
        text += one(kTokens);
    } else if (kind < 96) {
        text += one(kMarks);
    } else if (kind < 98) {
        text += one(kInvisible);
    } else {
        text += static_cast<char16_t>(0xD800 + below(0x800));
    }
}

} // namespace zqm::support
