// The language of manual pages.

#pragma once

#include <string>
#include <string_view>

namespace zqm::cli::roff {

inline constexpr const char* kLineBreak = ".br\n";

// The text, in which nothing means anything to roff.
std::string escaped(std::string_view text);

// Parts of a line, escaped.
std::string bold(std::string_view text);
std::string italic(std::string_view text);

// Lines. Texts are escaped, but for an item's name, which may have parts of its own.
std::string title(std::string_view name, std::string_view section, std::string_view source,
                  std::string_view manual);
std::string heading(std::string_view text);
std::string subheading(std::string_view text);
std::string paragraphs(std::string_view text); // a blank line is between them; other line breaks stay
std::string item(std::string_view name, std::string_view text);

} // namespace zqm::cli::roff
