// Classes of characters that decide where words begin and end, beside Unicode's own properties.

#pragma once

namespace zqm::engine {

bool isBlank(char32_t character); // white space of any kind
bool isDigit(char32_t character); // a decimal digit of any script
bool isLetterOrNumber(char32_t character);
bool isMark(char32_t character);      // combining
bool isInvisible(char32_t character); // a format character, such as a soft hyphen or a joiner
bool isCurrency(char32_t character);
bool isPictograph(char32_t character); // an emoji by itself, or what becomes one with a selector
bool isRegionalIndicator(char32_t character);

// Of a script whose words ICU finds in a dictionary.
bool isOfDictionaryScript(char32_t character);

// A sign that is spoken by its name: a symbol, or & % @ #.
bool isSpokenSymbol(char32_t character);

bool isSign(char32_t character); // + - and their like, before a number

// Whether the character joins its neighbours to one word, as in don't, e-mail, 25.50, AT&T.
bool joins(char32_t before, char32_t character, char32_t after);

} // namespace zqm::engine
