#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zqm::cli {

// Where the values of an option or word can be found, for shells that complete them.
enum class ValueSource {
    Anything, // nobody knows
    Files,
    Fixed, // they are `values`
    Asked, // they are in a column of what zqmspeech prints with the arguments `asked`
};

struct ValueType {
    std::string_view name; // as the help has it
    ValueSource source;
    std::vector<std::string> values = {};
    std::string_view asked = {};
    int column = 1; // of 1 on; no value has blanks, and what follows that in the first describes it
};

const std::vector<ValueType>& valueTypes();

// Null: there is none of this name.
const ValueType* findValueType(std::string_view name);

// That of a command's words: of "[TEXT...]" it is TEXT. Null: there are no words.
const ValueType* typeOfWords(std::string_view words);

} // namespace zqm::cli
