#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zqm::cli {

// A text as events count it: in UTF-16 units.
class SpokenText {
public:
    explicit SpokenText(std::string_view utf8);

    // The words there, in UTF-8; what lies outside of the text is left out.
    std::string cut(std::int64_t position, std::int64_t length) const;

    // How much of the text lies before this position, from 0 to 1.
    double shareBefore(std::int64_t position) const;

private:
    std::u16string units_;
};

} // namespace zqm::cli
