// Names for the tests of files: one text in two forms, and what no form can be made of.

#pragma once

#include <string>
#include <string_view>

namespace zqm::platform::test {

inline constexpr std::string_view kComposed = "Gr\xC3\xBC\xC3\x9F"
                                              "e";
inline constexpr std::string_view kDecomposed = "Gru\xCC\x88\xC3\x9F"
                                                "e";
inline constexpr std::u16string_view kDecomposedUnits = u"Gru\u0308\u00DFe";
inline constexpr std::string_view kNoUtf8 = "a\xFF\xFE.txt";

} // namespace zqm::platform::test
