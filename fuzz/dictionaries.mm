// Speech dictionaries: what a program gives is refused with its mistake or travels to an engine as it is,
// which takes every entry or says what is wrong with it.

#include "platform/speech_dictionary.h"

#include "engine/phonemes/phoneme_set.h"
#include "engine/speaker/lexicon.h"
#include "engine/text/utf8.h"
#include "fuzz/byte_source.h"
#include "fuzz/check.h"
#include "fuzz/target.h"
#include "platform/speech_strings.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

using namespace zqm;

NSString* textFrom(fuzz::ByteSource& source) {
    static NSString* const kTexts[] = {ZQM_SPEECH_DICTIONARY_LOCALE_IDENTIFIER,
                                       ZQM_SPEECH_DICTIONARY_MODIFICATION_DATE,
                                       ZQM_SPEECH_DICTIONARY_PRONUNCIATIONS,
                                       ZQM_SPEECH_DICTIONARY_ABBREVIATIONS,
                                       ZQM_SPEECH_DICTIONARY_ENTRY_SPELLING,
                                       ZQM_SPEECH_DICTIONARY_ENTRY_PHONEMES,
                                       @"2026-01-31 23:59:00 +0100"};
    constexpr std::size_t kCount = sizeof kTexts / sizeof *kTexts;
    const std::size_t choice = source.choice(2 * kCount);
    if (choice < kCount) {
        return kTexts[choice];
    }
    const std::string bytes = engine::toUtf8(engine::fromUtf8(source.text()));
    return [[[NSString alloc] initWithBytes:bytes.data() length:bytes.size()
                                   encoding:NSUTF8StringEncoding] autorelease];
}

id valueFrom(fuzz::ByteSource& source, int depth);

NSDictionary* dictionaryFrom(fuzz::ByteSource& source, int depth) {
    NSMutableDictionary* const dictionary = [NSMutableDictionary dictionary];
    for (std::size_t count = source.choice(5); count > 0; --count) {
        NSString* const key = textFrom(source);
        [dictionary setObject:valueFrom(source, depth + 1) forKey:key];
    }
    return dictionary;
}

id valueFrom(fuzz::ByteSource& source, int depth) {
    constexpr int kDeepest = 4;
    switch (source.choice(depth < kDeepest ? 6 : 3)) {
    case 1:
        return [NSNumber numberWithDouble:source.number<double>()];
    case 2:
        return [NSNull null];
    case 3:
    case 4: {
        NSMutableArray* const array = [NSMutableArray array];
        for (std::size_t count = source.choice(5); count > 0; --count) {
            [array addObject:valueFrom(source, depth + 1)];
        }
        return array;
    }
    case 5:
        return dictionaryFrom(source, depth);
    default:
        return textFrom(source);
    }
}

// A dictionary of the right form whose texts may be anything.
NSDictionary* wellFormedFrom(fuzz::ByteSource& source) {
    NSMutableDictionary* const dictionary = [NSMutableDictionary dictionary];
    [dictionary setObject:textFrom(source) forKey:ZQM_SPEECH_DICTIONARY_LOCALE_IDENTIFIER];
    if (source.flag()) {
        [dictionary setObject:textFrom(source) forKey:ZQM_SPEECH_DICTIONARY_MODIFICATION_DATE];
    }
    for (NSString* const key : {ZQM_SPEECH_DICTIONARY_PRONUNCIATIONS, ZQM_SPEECH_DICTIONARY_ABBREVIATIONS}) {
        NSMutableArray* const entries = [NSMutableArray array];
        for (std::size_t count = source.choice(4); count > 0; --count) {
            [entries addObject:[NSDictionary
                                   dictionaryWithObjectsAndKeys:textFrom(source),
                                                                ZQM_SPEECH_DICTIONARY_ENTRY_SPELLING,
                                                                textFrom(source),
                                                                ZQM_SPEECH_DICTIONARY_ENTRY_PHONEMES, nil]];
        }
        [dictionary setObject:entries forKey:key];
    }
    return dictionary;
}

const engine::PhonemeSet& phonemeSet() {
    static const engine::PhonemeSet instance(
        "en-us", {"@", "b", "d", "0", "g", "k", "a", "t", "s", "i:", "I", "E", "z"});
    return instance;
}

void checkTravels(const std::vector<protocol::LexiconDictionary>& dictionaries) {
    const protocol::Request request = protocol::SetLexicon{dictionaries};
    const std::string line = protocol::encode(request);
    const auto read = protocol::decodeRequest(std::string_view(line).substr(0, line.size() - 1));
    fuzz::check(read && *read == request, "a dictionary reaches the engine as it is", line);
}

// Every right entry is found in a text that is its spelling alone.
void checkFound(const std::vector<protocol::LexiconDictionary>& dictionaries) {
    const std::string language = "en-US";
    const engine::Lexicon lexicon(dictionaries, language, phonemeSet());
    const auto problems = engine::lexiconProblems(dictionaries, phonemeSet());
    for (const engine::LexiconProblem& problem : problems) {
        const auto& dictionary = dictionaries.at(problem.dictionary);
        const auto& entries = problem.isAbbreviation ? dictionary.abbreviations : dictionary.pronunciations;
        fuzz::check(problem.entry < entries.size() && !problem.message.empty(),
                    "a mistake is one of an entry");
    }
    for (const protocol::LexiconDictionary& dictionary : dictionaries) {
        for (const auto* entries : {&dictionary.pronunciations, &dictionary.abbreviations}) {
            for (const protocol::LexiconEntry& entry : *entries) {
                engine::TextPieces pieces(entry.spelling, language);
                while (const auto piece = pieces.next()) {
                    for (std::size_t word = 0; word < piece->words.size(); ++word) {
                        const auto match = lexicon.find(*piece, word);
                        fuzz::check(!match ||
                                        (match->words > 0 && word + match->words <= piece->words.size() &&
                                         match->phonemes != nullptr && !match->phonemes->empty()),
                                    "what is found are words of the text, with phonemes");
                    }
                }
            }
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    fuzz::ByteSource source(bytes, size);
    std::vector<protocol::LexiconDictionary> dictionaries;
    for (std::size_t count = 1 + source.choice(3); count > 0; --count) {
        std::string error;
        id const given = source.flag() ? wellFormedFrom(source) : valueFrom(source, 0);
        if (const auto lexicon = platform::lexiconOf(given, error)) {
            dictionaries.push_back(*lexicon);
        } else {
            fuzz::check(!error.empty(), "a refusal says what is wrong");
        }
    }
    checkTravels(dictionaries);
    checkFound(dictionaries);
    [pool release];
    return 0;
}
