#include "cli/text/sentences.h"

#include "text/sentence_iterator.h"

#include <cstdint>
#include <memory>

#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace zqm::cli {
namespace {

bool isBlank(char16_t unit) {
    return u_isUWhiteSpace(unit) != 0; // no white space needs two units
}

// Line ends, up to two: a paragraph separator is an empty line by itself.
int lineEndsAt(std::u16string_view text, std::size_t at) {
    switch (text[at]) {
    case u'\n':
        return at > 0 && text[at - 1] == u'\r' ? 0 : 1;
    case u'\r':
    case u'\u2028':
        return 1;
    case u'\u2029':
        return 2;
    default:
        return 0;
    }
}

std::size_t endOfBlanks(std::u16string_view text, std::size_t at) {
    while (at < text.size() && isBlank(text[at])) {
        ++at;
    }
    return at;
}

// For ICU every line is a sentence; but lines are broken inside sentences too, and spoken as if they weren't.
std::u16string withoutLoneLineEnds(std::u16string_view text) {
    std::u16string joined(text);
    for (std::size_t at = 0; at < text.size();) {
        if (!isBlank(text[at])) {
            ++at;
            continue;
        }
        const std::size_t end = endOfBlanks(text, at);
        int lineEnds = 0;
        for (std::size_t blank = at; blank < end; ++blank) {
            lineEnds += lineEndsAt(text, blank);
        }
        if (lineEnds == 1) {
            joined.replace(at, end - at, end - at, u' ');
        }
        at = end;
    }
    return joined;
}

} // namespace

std::vector<std::size_t> sentenceEnds(std::u16string_view text, const std::string& language) {
    const std::u16string joined = withoutLoneLineEnds(text);
    const icu::UnicodeString units(false, joined.data(), static_cast<std::int32_t>(joined.size())); // aliased
    const std::unique_ptr<icu::BreakIterator> sentences = text::sentenceIterator(language);
    sentences->setText(units);
    std::vector<std::size_t> ends;
    const std::size_t start = endOfBlanks(text, 0);
    for (std::int32_t at = sentences->next(); at != icu::BreakIterator::DONE; at = sentences->next()) {
        const std::size_t end = endOfBlanks(text, static_cast<std::size_t>(at));
        const bool hasSentence = end > (ends.empty() ? start : ends.back());
        if (hasSentence) {
            ends.push_back(end);
        }
    }
    if (ends.empty() && !text.empty()) {
        ends.push_back(text.size());
    }
    return ends;
}

} // namespace zqm::cli
