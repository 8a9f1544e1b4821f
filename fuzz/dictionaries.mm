// Speech dictionaries: what a program gives is refused with its mistake or travels to an engine as it is,
// which finds every entry or says what is wrong with it.

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

bool isLeftOut(const std::vector<engine::LexiconProblem>& problems, std::size_t dictionary,
               bool isAbbreviation, std::size_t entry) {
    return std::any_of(problems.begin(), problems.end(), [&](const engine::LexiconProblem& problem) {
        return problem.dictionary == dictionary && problem.isAbbreviation == isAbbreviation &&
               problem.entry == entry;
    });
}

// An entry, and the dictionary that it would be alone.
struct Sole {
    protocol::LexiconDictionary dictionary;
    std::string spelling;
    bool isLeftOut = false;
};

std::vector<Sole> soleEntries(const std::vector<protocol::LexiconDictionary>& dictionaries) {
    const auto problems = engine::lexiconProblems(dictionaries, phonemeSet());
    std::size_t count = 0;
    std::vector<Sole> result;
    for (std::size_t index = 0; index < dictionaries.size(); ++index) {
        for (const bool isAbbreviation : {false, true}) {
            const auto entries = isAbbreviation ? &protocol::LexiconDictionary::abbreviations
                                                : &protocol::LexiconDictionary::pronunciations;
            for (std::size_t entry = 0; entry < (dictionaries[index].*entries).size(); ++entry) {
                Sole sole{dictionaries[index], (dictionaries[index].*entries)[entry].spelling,
                          isLeftOut(problems, index, isAbbreviation, entry)};
                sole.dictionary.pronunciations.clear();
                sole.dictionary.abbreviations.clear();
                (sole.dictionary.*entries).push_back((dictionaries[index].*entries)[entry]);
                count += sole.isLeftOut ? 1 : 0;
                result.push_back(std::move(sole));
            }
        }
    }
    fuzz::check(count == problems.size() && std::none_of(problems.begin(), problems.end(),
                                                         [](const engine::LexiconProblem& problem) {
                                                             return problem.message.empty();
                                                         }),
                "a mistake is one of an entry, and is told");
    return result;
}

engine::Lexicon lexiconOf(const std::vector<protocol::LexiconDictionary>& dictionaries,
                          const std::string& language) {
    return {dictionaries, language, phonemeSet()};
}

bool isSaidBy(const std::vector<std::string>& phonemes, const std::vector<Sole>& entries,
              const engine::Piece& piece) {
    return std::any_of(entries.begin(), entries.end(), [&](const Sole& entry) {
        const engine::Lexicon lexicon = lexiconOf({entry.dictionary}, entry.dictionary.locale);
        const auto match = lexicon.find(piece, 0);
        return match && match->words == piece.words.size() && *match->phonemes == phonemes;
    });
}

// Every right entry, and no other, is found in a text that is its spelling alone, by itself and among all.
// What is found among all is said by an entry of that spelling: when there is one, by it.
void checkFound(const std::vector<protocol::LexiconDictionary>& dictionaries) {
    const std::vector<Sole> entries = soleEntries(dictionaries);
    for (const Sole& entry : entries) {
        engine::TextPieces pieces(entry.spelling, "en-US");
        const auto piece = pieces.next();
        if (!piece || pieces.next()) {
            continue; // a text of several sentences, or an endless word: no place is that of all its words
        }
        fuzz::check(entry.isLeftOut || !piece->words.empty(), "the spelling of a right entry has a word",
                    entry.spelling);
        if (piece->words.empty()) {
            continue;
        }
        const engine::Lexicon sole = lexiconOf({entry.dictionary}, entry.dictionary.locale);
        const engine::Lexicon all = lexiconOf(dictionaries, entry.dictionary.locale);
        const auto own = sole.find(*piece, 0);
        fuzz::check(own.has_value() != entry.isLeftOut, "an entry is right or is left out", entry.spelling);
        if (!own) {
            continue;
        }
        fuzz::check(own->words == piece->words.size() && !own->phonemes->empty(),
                    "an entry is for all words of its spelling, with phonemes", entry.spelling);
        const auto match = all.find(*piece, 0);
        fuzz::check(match && match->words == own->words, "an entry is found among all", entry.spelling);
        fuzz::check(isSaidBy(*match->phonemes, entries, *piece), "what is found is said by its entry",
                    entry.spelling);
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
