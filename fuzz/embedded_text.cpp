// Commands in a text: what is spoken is the text without them and no less, and every place of it leads back
// to where that stands in the whole.

#include "engine/text/embedded_text.h"
#include "engine/text/utf8.h"
#include "fuzz/byte_source.h"
#include "fuzz/check.h"
#include "fuzz/target.h"

#include <string>
#include <unicode/unistr.h>
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

std::string utf8(const std::u16string& units) {
    std::string result;
    return icu::UnicodeString(units.data(), static_cast<std::int32_t>(units.size())).toUTF8String(result);
}

class Checker {
public:
    Checker(const std::string& text, const protocol::Delimiters& delimiters)
        : delimiters_(delimiters), parsed_(engine::parseEmbeddedText(text, delimiters)), whole_(units(text)),
          spoken_(units(parsed_.text)) {}

    void check() const {
        fuzz::check(validText(parsed_.text) == parsed_.text, "what is spoken is UTF-8", parsed_.text);
        checkPlaces();
        checkLeftOut();
        checkFirstList();
        checkCommands();
    }

private:
    void checkPlaces() const;
    [[nodiscard]] bool areLists(std::size_t begin, std::size_t end) const;
    void checkLeftOut() const;
    void checkFirstList() const;
    void checkCommands() const;

    protocol::Delimiters delimiters_; // at the beginning
    engine::EmbeddedText parsed_;
    std::u16string whole_;
    std::u16string spoken_;
};

void Checker::checkPlaces() const {
    std::size_t before = 0;
    for (std::size_t unit = 0; unit < spoken_.size(); ++unit) {
        const std::size_t original = parsed_.originalPosition(unit);
        fuzz::check(original < whole_.size(), "a unit that is spoken stands in the whole text");
        fuzz::check(unit == 0 || original > before, "units stand in their order");
        const bool isInserted = spoken_[unit] == u' ' && whole_[original] != u' ';
        fuzz::check(isInserted || spoken_[unit] == whole_[original],
                    "a unit that is spoken is that of the whole text", std::to_string(unit));
        before = original;
    }
    fuzz::check(parsed_.originalPosition(spoken_.size()) <= whole_.size(),
                "the end stands in the whole text");
}

// Whether that is lists of commands and nothing else. Each may change the delimiters of those behind it.
bool Checker::areLists(std::size_t begin, std::size_t end) const {
    while (begin < end) {
        const protocol::Delimiters present =
            engine::parseEmbeddedText(utf8(whole_.substr(0, begin)), delimiters_).delimiters;
        const std::u16string prefix = units(present.prefix);
        const std::u16string suffix = units(present.suffix);
        if (prefix.empty() || suffix.empty() || whole_.compare(begin, prefix.size(), prefix) != 0) {
            return false;
        }
        const std::size_t closing = whole_.find(suffix, begin + prefix.size());
        if (closing == std::u16string::npos) {
            return false;
        }
        begin = closing + suffix.size();
    }
    return begin == end;
}

void Checker::checkLeftOut() const {
    std::size_t next = 0; // of the whole text
    for (std::size_t unit = 0; unit <= spoken_.size(); ++unit) {
        const std::size_t original = unit < spoken_.size() ? parsed_.originalPosition(unit) : whole_.size();
        // A blank may stand for lists, and then its place is theirs.
        const bool mayStandForLists = unit > 0 && spoken_[unit - 1] == u' ';
        const bool isWhole = original == next && (unit == 0 || spoken_[unit - 1] == whole_[next - 1]);
        fuzz::check(isWhole || areLists(next, original) || (mayStandForLists && areLists(next - 1, original)),
                    "what is not spoken stands between delimiters", std::to_string(next));
        next = original + 1;
    }
}

// Of the first list alone it is plain which it is.
void Checker::checkFirstList() const {
    const std::u16string prefix = units(delimiters_.prefix);
    const std::u16string suffix = units(delimiters_.suffix);
    const std::size_t opening = whole_.find(prefix);
    if (prefix.empty() || suffix.empty() || opening == std::u16string::npos) {
        fuzz::check(spoken_ == whole_ && parsed_.commands.empty() && parsed_.delimiters == delimiters_,
                    "a text without an opening delimiter is spoken as it stands");
        return;
    }
    const std::size_t begin = opening + prefix.size();
    const std::size_t closing = whole_.find(suffix, begin);
    if (closing == std::u16string::npos ||
        whole_.substr(begin, closing - begin).find(prefix) != std::u16string::npos) {
        return;
    }
    const std::size_t end = closing + suffix.size();
    for (std::size_t unit = 0; unit < spoken_.size(); ++unit) {
        const std::size_t original = parsed_.originalPosition(unit);
        const bool standsForList = original == opening && spoken_[unit] == u' ';
        fuzz::check(original < opening || original >= end || standsForList,
                    "a list of commands is not spoken", std::to_string(unit));
    }
}

void Checker::checkCommands() const {
    const engine::PlacedCommand* before = nullptr;
    for (const engine::PlacedCommand& command : parsed_.commands) {
        fuzz::check(command.at <= spoken_.size(), "a command acts within what is spoken");
        fuzz::check(command.original <= whole_.size(), "a command stands in the whole text");
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
    Checker(text, given).check();
    return 0;
}
