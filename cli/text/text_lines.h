#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace zqm::cli {

// In UTF-16 units of the text; without the blanks at its ends.
struct TextLine {
    std::size_t begin;
    std::size_t end;

    bool operator==(const TextLine&) const = default;
};

// A text in lines of at most so many columns. Its own line ends stay, blank lines don't. Lines are found as
// they are asked for, so a long text costs nothing but what was seen of it.
class TextLines {
public:
    // The first line begins here. The text outlives this.
    TextLines(const std::u16string& text, std::size_t columns, std::size_t begin = 0);
    ~TextLines();
    TextLines(const TextLines&) = delete;
    TextLines& operator=(const TextLines&) = delete;

    // So many lines, fewer if there are no more, the one with this position in their middle where it can be.
    std::span<const TextLine> around(std::size_t position, std::size_t count);

private:
    struct Breaks;

    bool findNext();

    const std::u16string& text_;
    std::size_t columns_;
    std::size_t next_;
    std::unique_ptr<Breaks> breaks_;
    std::vector<TextLine> lines_;
};

} // namespace zqm::cli
