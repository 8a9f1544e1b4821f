#include "platform/speech_dictionary.h"

#include "engine/protocol/modification_date.h"
#include "platform/foundation_text.h"
#include "platform/speech_strings.h"

#include <utility>
#include <vector>

namespace zqm::platform {
namespace {

using protocol::LexiconDictionary;
using protocol::LexiconEntry;

// Empty when there is none.
std::string textOf(NSDictionary* dictionary, NSString* key) {
    id const value = [dictionary objectForKey:key];
    return [value isKindOfClass:[NSString class]] ? utf8Of(value) : std::string();
}

// Whether nothing stands there, or a text.
bool mayBeText(NSDictionary* dictionary, NSString* key) {
    id const value = [dictionary objectForKey:key];
    return value == nil || [value isKindOfClass:[NSString class]];
}

// Appends what stands under a key, which may be nothing; false: it is malformed, and `error` says how.
bool appendEntries(std::vector<LexiconEntry>& entries, NSDictionary* dictionary, NSString* key,
                   std::string& error) {
    NSArray* const given = [dictionary objectForKey:key];
    if (given != nil && ![given isKindOfClass:[NSArray class]]) {
        error = "its " + utf8Of(key) + " is no array";
        return false;
    }
    for (NSUInteger index = 0; index < [given count]; ++index) {
        NSDictionary* const entry = [given objectAtIndex:index];
        if (![entry isKindOfClass:[NSDictionary class]]) {
            error = "entry " + std::to_string(index) + " of its " + utf8Of(key) + " is no dictionary";
            return false;
        }
        LexiconEntry found{.spelling = textOf(entry, ZQM_SPEECH_DICTIONARY_ENTRY_SPELLING),
                           .phonemes = textOf(entry, ZQM_SPEECH_DICTIONARY_ENTRY_PHONEMES)};
        if (found.spelling.empty() || found.phonemes.empty()) {
            error = "entry " + std::to_string(index) + " of its " + utf8Of(key) + " has no " +
                    (found.spelling.empty() ? "spelling" : "phonemes");
            return false;
        }
        entries.push_back(std::move(found));
    }
    return true;
}

} // namespace

std::optional<LexiconDictionary> lexiconOf(NSDictionary* dictionary, std::string& error) {
    if (![dictionary isKindOfClass:[NSDictionary class]]) {
        error = dictionary == nil ? "there is none" : "it is no dictionary";
        return std::nullopt;
    }
    if (!mayBeText(dictionary, ZQM_SPEECH_DICTIONARY_LOCALE_IDENTIFIER)) {
        error = "its locale is no text";
        return std::nullopt;
    }
    LexiconDictionary lexicon{.locale = textOf(dictionary, ZQM_SPEECH_DICTIONARY_LOCALE_IDENTIFIER),
                              .modificationDate = {},
                              .pronunciations = {},
                              .abbreviations = {}};
    if ([dictionary objectForKey:ZQM_SPEECH_DICTIONARY_MODIFICATION_DATE] != nil) {
        const std::string date = textOf(dictionary, ZQM_SPEECH_DICTIONARY_MODIFICATION_DATE);
        if (!protocol::parseModificationDate(date)) {
            error = "its date \"" + date + "\" is none such as \"2026-01-31 23:59:00 +0100\"";
            return std::nullopt;
        }
        lexicon.modificationDate = date;
    }
    if ([dictionary objectForKey:ZQM_SPEECH_DICTIONARY_PRONUNCIATIONS] == nil &&
        [dictionary objectForKey:ZQM_SPEECH_DICTIONARY_ABBREVIATIONS] == nil) {
        error = "it has neither pronunciations nor abbreviations";
        return std::nullopt;
    }
    if (!appendEntries(lexicon.pronunciations, dictionary, ZQM_SPEECH_DICTIONARY_PRONUNCIATIONS, error) ||
        !appendEntries(lexicon.abbreviations, dictionary, ZQM_SPEECH_DICTIONARY_ABBREVIATIONS, error)) {
        return std::nullopt;
    }
    return lexicon;
}

} // namespace zqm::platform
