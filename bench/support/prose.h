// Texts to be spoken, of any number of words.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zqm::bench {

// English prose of so many words: whole sentences, of which the last may be cut short.
inline std::string prose(std::size_t words) {
    static constexpr std::string_view kSentences =
        "The ferry leaves the harbour at half past seven, and it takes about an hour to the island. "
        "Most of the people on board have been there before. They know where the wind is least cold, and who "
        "sells the coffee. Nobody speaks much until the lighthouse comes into view; then everyone stands up, "
        "looks for a bag or a child, and walks to the bow. The captain has seen it all his life, but he "
        "still looks. ";
    std::string text;
    for (std::size_t at = 0, count = 0; count < words; ++count) {
        const std::size_t end = kSentences.find(' ', at) + 1;
        text += kSentences.substr(at, end - at);
        at = end % kSentences.size();
    }
    while (!text.empty() && (text.back() == ' ' || text.back() == ',' || text.back() == ';')) {
        text.pop_back();
    }
    if (!text.empty() && text.back() != '.') {
        text += '.';
    }
    return text;
}

} // namespace zqm::bench
