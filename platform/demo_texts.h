// What a voice says to introduce itself.

#pragma once

#include <string_view>

namespace zqm::platform {

// In the language of a BCP 47 tag, or of the closest shorter tag; empty when there is none in that language.
std::string_view demoText(std::string_view language);

} // namespace zqm::platform
