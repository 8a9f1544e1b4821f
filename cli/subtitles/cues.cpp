#include "cli/subtitles/cues.h"

#include "cli/text/display_width.h"
#include "cli/text/sentences.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>

namespace zqm::cli {
namespace {

constexpr std::string_view kBlank = " ";

bool isBlank(char16_t unit) {
    return u_isUWhiteSpace(unit) != 0;
}

std::string utf8(const icu::UnicodeString& text) {
    std::string bytes;
    return text.toUTF8String(bytes);
}

// ---- sentences

// The text that people see: without commands, each run of white space one blank.
class VisibleText {
public:
    explicit VisibleText(const SpeechTiming& timing) : text_(timing.text), isHidden_(text_.size(), false) {
        hideCommands(timing.words);
    }

    // A blank at the beginning is left out.
    std::string cut(std::size_t begin, std::size_t end) const {
        icu::UnicodeString visible;
        bool isAfterBlank = true;
        for (std::size_t at = begin; at < end; ++at) {
            const char16_t unit = text_[at];
            if (isHidden_[at]) {
                continue;
            }
            if (isBlank(unit)) {
                if (!isAfterBlank) {
                    visible.append(u' ');
                }
                isAfterBlank = true;
            } else if (u_charType(unit) != U_CONTROL_CHAR) {
                visible.append(unit);
                isAfterBlank = false;
            }
        }
        return utf8(visible);
    }

    // Where what belongs to a word begins, as an opening quotation mark does: behind the blank before it.
    std::size_t beginOfPart(std::size_t previousEnd, std::size_t word) const {
        for (std::size_t at = word; at > previousEnd; --at) {
            if (isBlank(text_[at - 1])) {
                return at;
            }
        }
        return word;
    }

    // Before what there is to say behind the last word heard: that was not heard.
    std::size_t endOfHeard(std::size_t lastEnd, std::size_t end) const {
        for (std::size_t at = lastEnd; at < end; ++at) {
            if (!isHidden_[at] && u_isalnum(text_[at]) != 0) {
                return beginOfPart(lastEnd, at);
            }
        }
        return end;
    }

private:
    // Words in such brackets show that they are none.
    void hideCommands(const std::vector<TimedWord>& words) {
        constexpr std::u16string_view kOpening = u"[[";
        constexpr std::u16string_view kClosing = u"]]";
        const std::u16string_view text = text_;
        auto word = words.begin();
        for (std::size_t begin = text.find(kOpening); begin != std::u16string_view::npos;) {
            const std::size_t closing = text.find(kClosing, begin);
            if (closing == std::u16string_view::npos) {
                return;
            }
            const std::size_t end = closing + kClosing.size();
            word = std::find_if(word, words.end(),
                                [begin](const TimedWord& candidate) { return candidate.position >= begin; });
            if (word == words.end() || word->position >= end) {
                std::fill(isHidden_.begin() + static_cast<std::ptrdiff_t>(begin),
                          isHidden_.begin() + static_cast<std::ptrdiff_t>(end), true);
            }
            begin = text.find(kOpening, end);
        }
    }

    const std::u16string& text_;
    std::vector<bool> isHidden_;
};

std::size_t endOf(const TimedWord& word, std::size_t limit) {
    return std::min(limit, word.position + word.length);
}

Cue sentenceCue(const VisibleText& text, std::span<const TimedWord> words, std::size_t begin,
                std::size_t end) {
    const std::size_t heardEnd = text.endOfHeard(endOf(words.back(), end), end);
    Cue cue;
    std::size_t partBegin = begin;
    for (std::size_t index = 0; index < words.size(); ++index) {
        const bool isLast = index + 1 == words.size();
        const std::size_t partEnd =
            isLast ? heardEnd : text.beginOfPart(endOf(words[index], end), words[index + 1].position);
        cue.push_back({words[index].begin, words[index].end, text.cut(partBegin, partEnd)});
        partBegin = partEnd;
    }
    if (cue.back().text.ends_with(kBlank)) {
        cue.back().text.pop_back();
    }
    return cue;
}

// ---- lines

bool endsInBlank(const CuePart& part) {
    return part.text.ends_with(kBlank);
}

bool endsClause(const CuePart& part) {
    const icu::UnicodeString text = icu::UnicodeString::fromUTF8(part.text).trim();
    constexpr std::u16string_view kClauseEnds =
        u",;:.!?)\u2014\u2013\u3001\u3002\uFF0C\uFF1B\uFF1A\u060C\u061B";
    return !text.isEmpty() && kClauseEnds.find(text[text.length() - 1]) != std::u16string_view::npos;
}

// Where the text can be cut so that each piece fits into so many columns, at least a character in each: what
// people take for one is never cut.
std::vector<std::size_t> piecesOf(std::string_view text, std::size_t columns) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    UText units = UTEXT_INITIALIZER;
    utext_openUTF8(&units, text.data(), static_cast<std::int64_t>(text.size()), &status);
    if (U_FAILURE(status)) {
        throw std::runtime_error(std::string("ICU finds no characters: ") + u_errorName(status));
    }
    characters->setText(&units, status);
    std::vector<std::size_t> ends;
    std::size_t begin = 0;
    std::size_t previous = 0;
    for (std::int32_t next = characters->next(); next != icu::BreakIterator::DONE;
         next = characters->next()) {
        const auto end = static_cast<std::size_t>(next);
        if (previous > begin && columnsOf(text.substr(begin, end - begin)) > columns) {
            ends.push_back(previous);
            begin = previous;
        }
        previous = end;
    }
    ends.push_back(text.size());
    utext_close(&units);
    return ends;
}

// Those that are wider than a line in parts.
Cue withoutWideWords(const Cue& sentence, std::size_t columns) {
    Cue parts;
    for (const CuePart& part : sentence) {
        const std::size_t blanks = endsInBlank(part) ? kBlank.size() : 0;
        const std::string_view word = std::string_view(part.text).substr(0, part.text.size() - blanks);
        const std::size_t all = columnsOf(word);
        if (all <= columns) {
            parts.push_back(part);
            continue;
        }
        const auto timeAt = [&](std::size_t at) {
            return part.begin + (part.end - part.begin) * static_cast<double>(columnsOf(word.substr(0, at))) /
                                    static_cast<double>(all);
        };
        std::size_t begin = 0;
        for (const std::size_t end : piecesOf(word, columns)) {
            const double endTime = end == word.size() ? part.end : timeAt(end);
            parts.push_back({timeAt(begin), endTime, std::string(word.substr(begin, end - begin))});
            begin = end;
        }
        parts.back().text.append(part.text.substr(word.size()));
    }
    return parts;
}

// Cuts a sentence, whose words each fit into a line, into cues of at most two lines.
class LineBreaker {
public:
    LineBreaker(const Cue& sentence, std::size_t columns) : parts_(sentence), columns_(columns) {
        columnsBefore_.push_back(0);
        for (const CuePart& part : parts_) {
            columnsBefore_.push_back(columnsBefore_.back() + columnsOf(part.text));
        }
    }

    std::vector<Cue> cues() const {
        std::vector<Cue> cues;
        for (std::size_t begin = 0; begin < parts_.size();) {
            const std::size_t end = fits(begin, parts_.size()) ? parts_.size() : endOfCue(begin);
            Cue cue(parts_.begin() + static_cast<std::ptrdiff_t>(begin),
                    parts_.begin() + static_cast<std::ptrdiff_t>(end));
            if (endsInBlank(cue.back())) {
                cue.back().text.pop_back();
            }
            if (const std::size_t line = secondLine(begin, end); line != 0) {
                if (std::string& before = cue[line - begin - 1].text; before.ends_with(kBlank)) {
                    before.pop_back();
                }
                cue[line - begin].startsLine = true;
            }
            cues.push_back(std::move(cue));
            begin = end;
        }
        return cues;
    }

private:
    // Of a line with these parts.
    std::size_t width(std::size_t begin, std::size_t end) const {
        return columnsBefore_[end] - columnsBefore_[begin] - (endsInBlank(parts_[end - 1]) ? 1 : 0);
    }

    bool fits(std::size_t begin, std::size_t end) const {
        return width(begin, end) <= columns_ || secondLine(begin, end) != 0;
    }

    // The one of the cuts that can be made that leaves about so many columns before it, or a few more or less
    // behind a clause; 0 when none can be.
    template <typename CanCut>
    std::size_t bestCut(std::size_t begin, std::size_t end, double columns, CanCut canCut) const {
        constexpr double kClauseColumns = 12;
        std::size_t best = 0;
        double least = std::numeric_limits<double>::infinity();
        for (std::size_t cut = begin + 1; cut < end && width(begin, cut) <= 2 * columns_ + 1; ++cut) {
            const double distance = std::abs(static_cast<double>(width(begin, cut)) - columns) -
                                    (endsClause(parts_[cut - 1]) ? kClauseColumns : 0);
            if (distance < least && canCut(cut)) {
                least = distance;
                best = cut;
            }
        }
        return best;
    }

    // 0 when there is one line, or the parts don't fit into two.
    std::size_t secondLine(std::size_t begin, std::size_t end) const {
        const std::size_t all = width(begin, end);
        if (all <= columns_) {
            return 0;
        }
        return bestCut(begin, end, static_cast<double>(all) / 2, [&](std::size_t cut) {
            return width(begin, cut) <= columns_ && width(cut, end) <= columns_;
        });
    }

    // Of one that begins here and can't take all the rest: of several that would be about equal.
    std::size_t endOfCue(std::size_t begin) const {
        const auto all = static_cast<double>(width(begin, parts_.size()));
        const double cues = std::max(2.0, std::ceil(all / static_cast<double>(2 * columns_)));
        const std::size_t cut = bestCut(begin, parts_.size(), all / cues,
                                        [&](std::size_t candidate) { return fits(begin, candidate); });
        return cut == 0 ? begin + 1 : cut;
    }

    const Cue& parts_;
    std::size_t columns_; // of a line
    std::vector<std::size_t> columnsBefore_;
};

} // namespace

std::vector<Cue> sentenceCues(const SpeechTiming& timing) {
    const VisibleText text(timing);
    std::vector<Cue> cues;
    std::size_t begin = 0;
    auto word = timing.words.begin();
    for (const std::size_t end : sentenceEnds(timing.text, timing.language)) {
        const auto next = std::find_if(word, timing.words.end(), [end](const TimedWord& candidate) {
            return candidate.position >= end;
        });
        if (next != word) {
            cues.push_back(sentenceCue(text, std::span(word, next), begin, end));
        }
        word = next;
        begin = end;
    }
    return cues;
}

std::vector<Cue> shortCues(const SpeechTiming& timing, std::size_t columns) {
    std::vector<Cue> cues;
    for (const Cue& sentence : sentenceCues(timing)) {
        const Cue parts = withoutWideWords(sentence, columns);
        std::ranges::move(LineBreaker(parts, columns).cues(), std::back_inserter(cues));
    }
    return cues;
}

} // namespace zqm::cli
