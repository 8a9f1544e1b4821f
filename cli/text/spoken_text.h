#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zqm::cli {

// A text as events count it: in UTF-16 units.
class SpokenText {
public:
    explicit SpokenText(std::string_view utf8);

    // The words there, in UTF-8; what lies outside of the text is left out.
    std::string cut(std::size_t position, std::size_t length) const;

    // How many code points lie before this position. Quick near the last one that was asked for.
    std::size_t codePointsBefore(std::size_t position) const;

    // How much of the text lies before this position, from 0 to 1.
    double shareBefore(std::size_t position) const;

    const std::u16string& units() const { return units_; }

private:
    std::u16string units_;
    mutable std::size_t counted_ = 0; // units, which are so many code points
    mutable std::size_t codePoints_ = 0;
};

} // namespace zqm::cli
