// Commands in a text: what is spoken is the text without them, and every place of it leads back to where that
// stands in the whole.

#include "engine/text/embedded_text.h"
#include "engine/text/utf8.h"
#include "fuzz/byte_source.h"
#include "fuzz/check.h"
#include "fuzz/target.h"

#include <string>
#include <unicode/utf16.h>
#include <vector>

namespace {

using namespace zqm;

// Any text, as the engine is given it: UTF-8 without mistakes.
std::string validText(const std::string& bytes) {
    return engine::toUtf8(engine::fromUtf8(bytes));
}

std::u16string units(const std::string& text) {
    std::u16string result;
    for (const char32_t character : engine::fromUtf8(text)) {
        if (character > 0xFFFF) {
            result += static_cast<char16_t>(U16_LEAD(character));
            result += static_cast<char16_t>(U16_TRAIL(character));
        } else {
            result += static_cast<char16_t>(character);
        }
    }
    return result;
}

protocol::Delimiters delimiters(fuzz::ByteSource& source) {
    static const std::vector<protocol::Delimiters> kDelimiters{
        {"[[", "]]"}, {"", ""}, {"<", ">"}, {"[", "["}, {"\u00AB", "\u00BB"}, {"a", "aa"}, {" ", ";"}};
    const std::size_t choice = source.choice(kDelimiters.size() + 1);
    if (choice < kDelimiters.size()) {
        return kDelimiters[choice];
    }
    return {validText(source.text()), validText(source.text())};
}

void checkPlaces(const engine::EmbeddedText& parsed, const std::u16string& whole) {
    const std::u16string spoken = units(parsed.text);
    std::size_t before = 0;
    for (std::size_t unit = 0; unit < spoken.size(); ++unit) {
        const std::size_t original = parsed.originalPosition(unit);
        fuzz::check(original < whole.size(), "a unit that is spoken stands in the whole text");
        fuzz::check(unit == 0 || original >= before, "units stand in their order");
        const bool isInserted = spoken[unit] == u' ' && whole[original] != u' ';
        fuzz::check(isInserted || spoken[unit] == whole[original],
                    "a unit that is spoken is that of the whole text", std::to_string(unit));
        before = original;
    }
    fuzz::check(parsed.originalPosition(spoken.size()) <= whole.size(), "the end stands in the whole text");
}

void checkCommands(const engine::EmbeddedText& parsed, const std::u16string& whole) {
    const std::size_t length = units(parsed.text).size();
    const engine::PlacedCommand* before = nullptr;
    for (const engine::PlacedCommand& command : parsed.commands) {
        fuzz::check(command.at <= length, "a command acts within what is spoken");
        fuzz::check(command.original <= whole.size(), "a command stands in the whole text");
        fuzz::check(before == nullptr || (before->at <= command.at && before->original <= command.original),
                    "commands stand in their order");
        before = &command;
        if (const auto* mistake = std::get_if<engine::Mistake>(&command.command)) {
            fuzz::check(!mistake->message.empty() && validText(mistake->message) == mistake->message,
                        "a mistake is told in a text", mistake->message);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    fuzz::ByteSource source(bytes, size);
    const protocol::Delimiters given = delimiters(source);
    const std::string text = validText(source.rest());
    const engine::EmbeddedText parsed = engine::parseEmbeddedText(text, given);
    const std::u16string whole = units(text);
    fuzz::check(validText(parsed.text) == parsed.text, "what is spoken is UTF-8", parsed.text);
    fuzz::check(units(parsed.text).size() <= whole.size(), "what is spoken is no longer than the whole text");
    checkPlaces(parsed, whole);
    checkCommands(parsed, whole);
    if (parsed.commands.empty() && parsed.delimiters == given && parsed.text.size() == text.size()) {
        fuzz::check(parsed.text == text, "a text without commands is spoken as it stands");
    }
    return 0;
}
