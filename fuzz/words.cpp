// The words of a text, and its pieces: words are whole, in order and apart, and the pieces together are the
// text.

#include "engine/text/words.h"
#include "engine/text/text_pieces.h"
#include "engine/text/utf8.h"
#include "fuzz/byte_source.h"
#include "fuzz/check.h"
#include "fuzz/target.h"

#include <string>
#include <vector>

namespace {

using namespace zqm;

std::size_t unitsOf(std::u32string_view text) {
    std::size_t units = 0;
    for (const char32_t character : text) {
        units += character > 0xFFFF ? 2 : 1;
    }
    return units;
}

void checkWords(std::u32string_view text) {
    static const engine::WordFinder finder;
    std::size_t end = 0;
    std::size_t endUnit = 0;
    for (const engine::Word& word : finder.find(text)) {
        fuzz::check(word.codePoints.begin >= end && word.codePoints.end > word.codePoints.begin &&
                        word.codePoints.end <= text.size(),
                    "words stand in the text, in order and apart");
        const std::size_t gap = unitsOf(text.substr(end, word.codePoints.begin - end));
        const std::size_t length = unitsOf(text.substr(word.codePoints.begin, word.codePoints.length()));
        fuzz::check(word.utf16.begin == endUnit + gap && word.utf16.length() == length,
                    "both ways of counting name the same word");
        end = word.codePoints.end;
        endUnit = word.utf16.end;
    }
}

void checkPieces(const std::u32string& text, const std::string& language, protocol::InputMode input) {
    engine::TextPieces pieces(engine::toUtf8(text), language);
    pieces.setInput(input);
    std::u32string joined;
    std::size_t end = 0;
    while (const auto piece = pieces.next()) {
        fuzz::check(!piece->text.empty() && piece->text.size() <= engine::TextPieces::kLongest,
                    "a piece holds something, and not too much");
        fuzz::check(piece->begin == unitsOf(joined), "a piece stands where the one before it ends");
        joined += piece->text;
        for (const engine::Word& word : piece->words) {
            fuzz::check(word.codePoints.begin < word.codePoints.end && word.utf16.begin >= end,
                        "the words of pieces stand in order and apart");
            end = word.utf16.end;
        }
        for (const std::size_t start : piece->sentenceStarts) {
            fuzz::check(start < piece->words.size(), "a sentence starts with a word");
        }
    }
    fuzz::check(joined == text, "the pieces are the text", engine::toUtf8(joined));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const std::vector<std::string> kLanguages{"en-US", "de-DE", "th-TH", "ja-JP", ""};
    fuzz::ByteSource source(bytes, size);
    const std::string& language = kLanguages[source.choice(kLanguages.size())];
    const auto input = source.flag() ? protocol::InputMode::Phonemes : protocol::InputMode::Text;
    const std::u32string text = engine::fromUtf8(source.rest());
    checkWords(text);
    checkPieces(text, language, input);
    return 0;
}
