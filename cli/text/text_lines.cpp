#include "cli/text/text_lines.h"

#include "cli/text/display_width.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>

namespace zqm::cli {
namespace {

bool isBlank(UChar32 codePoint) {
    return u_isUWhiteSpace(codePoint) != 0;
}

bool isLineEnd(UChar32 codePoint) {
    return codePoint == '\n' || codePoint == '\r' || codePoint == 0x2028 || codePoint == 0x2029;
}

} // namespace

// Where a line may be broken.
struct TextLines::Breaks {
    explicit Breaks(const std::u16string& text)
        : units(false, text.data(), static_cast<std::int32_t>(text.size())) { // aliased
        UErrorCode status = U_ZERO_ERROR;
        iterator.reset(icu::BreakIterator::createLineInstance(icu::Locale::getRoot(), status));
        if (U_FAILURE(status)) {
            throw std::runtime_error(std::string("ICU has no line break data: ") + u_errorName(status));
        }
        iterator->setText(units);
    }

    icu::UnicodeString units;
    std::unique_ptr<icu::BreakIterator> iterator;
};

TextLines::TextLines(const std::u16string& text, std::size_t columns, std::size_t begin)
    : text_(text), columns_(std::max<std::size_t>(columns, 1)), next_(begin),
      breaks_(std::make_unique<Breaks>(text)) {}

TextLines::~TextLines() = default;

std::span<const TextLine> TextLines::around(std::size_t position, std::size_t count) {
    while ((lines_.empty() || lines_.back().begin <= position) && findNext()) {
    }
    const auto behind =
        std::upper_bound(lines_.begin(), lines_.end(), position,
                         [](std::size_t at, const TextLine& line) { return at < line.begin; });
    const auto index = static_cast<std::size_t>(behind - lines_.begin());
    const std::size_t line = index == 0 ? 0 : index - 1;
    const std::size_t first = line - std::min(line, (count - 1) / 2);
    while (lines_.size() < first + count && findNext()) {
    }
    const std::size_t begin = std::min(first, lines_.size() - std::min(lines_.size(), count));
    return std::span(lines_).subspan(begin, std::min(count, lines_.size() - begin));
}

bool TextLines::findNext() {
    const char16_t* units = text_.data();
    const std::size_t size = text_.size();
    while (next_ < size && isBlank(units[next_])) {
        ++next_;
    }
    if (next_ == size) {
        return false;
    }
    TextLine line{next_, next_}; // ends behind its last character that is no blank
    std::size_t columns = 0;
    std::size_t lastBreak = next_;
    std::size_t endAtBreak = next_;
    auto nextBreak = static_cast<std::size_t>(breaks_->iterator->following(static_cast<std::int32_t>(next_)));
    for (std::size_t at = next_; at < size;) {
        const std::size_t begin = at;
        UChar32 codePoint = 0;
        U16_NEXT(units, at, size, codePoint);
        if (isLineEnd(codePoint)) {
            next_ = at;
            lines_.push_back(line);
            return true;
        }
        if (begin == nextBreak) {
            lastBreak = begin;
            endAtBreak = line.end;
            nextBreak = static_cast<std::size_t>(breaks_->iterator->next());
        }
        columns += isDrawable(codePoint) || isBlank(codePoint) ? columnsOf(codePoint) : 0;
        if (columns > columns_ && !isBlank(codePoint)) {
            const bool isLongWord = endAtBreak == line.begin;
            const bool isFirst = line.end == line.begin;
            line.end = isFirst ? at : isLongWord ? begin : endAtBreak;
            next_ = isLongWord ? line.end : lastBreak;
            lines_.push_back(line);
            return true;
        }
        if (!isBlank(codePoint)) {
            line.end = at;
        }
    }
    next_ = size;
    lines_.push_back(line);
    return true;
}

} // namespace zqm::cli
