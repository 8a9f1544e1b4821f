#include "cli/command_line/value_types.h"

#include "cli/documents/completion.h"
#include "cli/voices/voice.h"

#include <algorithm>

namespace zqm::cli {

const std::vector<ValueType>& valueTypes() {
    static const std::vector<ValueType> types{
        {"CHECK", ValueSource::Asked, {}, "validate --list"},
        {"COMMAND", ValueSource::Anything},
        {"DEVICE", ValueSource::Asked, {}, "say --devices"},
        {"FILE", ValueSource::Files},
        {"FORMAT", ValueSource::Asked, {}, "say --formats"},
        {"GENDER", ValueSource::Fixed, genderNames()},
        {"LANGUAGE", ValueSource::Asked, {}, "voices", 2},
        {"LIBRARY", ValueSource::Files},
        {"NUMBER", ValueSource::Anything},
        {"SECONDS", ValueSource::Anything},
        {"SHELL", ValueSource::Fixed, shellNames()},
        {"TEXT", ValueSource::Anything},
        {"VOICE", ValueSource::Asked, {}, "voices"},
    };
    return types;
}

const ValueType* findValueType(std::string_view name) {
    const auto found = std::ranges::find(valueTypes(), name, &ValueType::name);
    return found == valueTypes().end() ? nullptr : &*found;
}

const ValueType* typeOfWords(std::string_view words) {
    const std::size_t begin = words.find_first_not_of('[');
    return begin == std::string_view::npos
               ? nullptr
               : findValueType(words.substr(begin, words.find_first_of(".]", begin) - begin));
}

} // namespace zqm::cli
