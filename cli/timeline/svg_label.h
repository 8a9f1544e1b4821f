#pragma once

#include <string>
#include <string_view>

namespace zqm::cli {

// The text for an XML document, without the characters that such may not hold. The text is UTF-8.
std::string escapedForXml(std::string_view text);

// About how wide it is in a sans-serif font, rather too wide, in the size of the font.
double labelWidth(std::string_view text);

} // namespace zqm::cli
