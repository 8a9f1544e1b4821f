#include "platform/speech_properties.h"

#include "engine/protocol/phoneme_symbols.h"
#include "platform/file_url.h"
#include "platform/foundation_text.h"
#include "platform/speech_strings.h"
#include "platform/voice_catalogue.h"
#include "platform/voice_strings.h"

#include <limits>
#include <span>

namespace zqm::platform {
namespace {

using protocol::InputMode;
using protocol::Manner;
using protocol::SpellingMode;

// Of the domain NSOSStatusErrorDomain.
enum class Code : NSInteger {
    UnknownProperty = -231,
    NotReady = -242,
    VoiceNotFound = -244,
    BadValue = -245,
};

struct Refusal {
    Code code = Code::BadValue;
    NSString* description = nil; // nil: the value is of the wrong kind
};
using Outcome = std::optional<Refusal>;

bool isNothing(id value) {
    return value == nil || [value isKindOfClass:[NSNull class]];
}

template <typename Kind>
Kind* as(id value) {
    return [value isKindOfClass:[Kind class]] ? value : nil;
}

NSNumber* number(double value) {
    return [NSNumber numberWithDouble:value];
}

NSNumber* integer(long long value) {
    return [NSNumber numberWithLongLong:value];
}

// ---- how to speak

template <std::optional<double> Manner::*Member>
id readNumber(PropertyOwner& owner) {
    return number(*(owner.manner().*Member));
}

template <std::optional<double> Manner::*Member, int Least, int Greatest>
Outcome writeNumber(PropertyOwner& owner, id value) {
    NSNumber* const given = as<NSNumber>(value);
    const double asked = [given doubleValue];
    if (given == nil || !(asked >= Least && asked <= Greatest)) {
        return Refusal{};
    }
    Manner change;
    change.*Member = asked;
    owner.change(change);
    return std::nullopt;
}

template <typename Mode>
struct ModeName {
    Mode mode;
    NSString* name;
};

std::span<const ModeName<InputMode>> namesOf(InputMode) {
    static const ModeName<InputMode> names[] = {{InputMode::Text, ZQM_SPEECH_MODE_TEXT},
                                                {InputMode::Phonemes, ZQM_SPEECH_MODE_PHONEME}};
    return names;
}

std::span<const ModeName<SpellingMode>> namesOf(SpellingMode) {
    static const ModeName<SpellingMode> names[] = {{SpellingMode::Normal, ZQM_SPEECH_MODE_NORMAL},
                                                   {SpellingMode::Literal, ZQM_SPEECH_MODE_LITERAL}};
    return names;
}

template <auto Member>
id readMode(PropertyOwner& owner) {
    const auto mode = *(owner.manner().*Member);
    for (const auto& each : namesOf(mode)) {
        if (each.mode == mode) {
            return each.name;
        }
    }
    return nil;
}

template <auto Member>
Outcome writeMode(PropertyOwner& owner, id value) {
    Manner change;
    for (const auto& each : namesOf(*(owner.manner().*Member))) {
        if ([each.name isEqual:value]) {
            change.*Member = each.mode;
            owner.change(change);
            return std::nullopt;
        }
    }
    return Refusal{};
}

// ---- what was heard

id readStatus(PropertyOwner& owner) {
    const SpeechStatus status = owner.status();
    return [NSDictionary dictionaryWithObjectsAndKeys:integer(status.isSpeaking && !status.isPaused),
                                                      ZQM_SPEECH_STATUS_OUTPUT_BUSY, integer(status.isPaused),
                                                      ZQM_SPEECH_STATUS_OUTPUT_PAUSED,
                                                      integer(static_cast<long long>(status.charactersLeft)),
                                                      ZQM_SPEECH_STATUS_NUMBER_OF_CHARACTERS_LEFT,
                                                      integer(status.phoneme), ZQM_SPEECH_STATUS_PHONEME_CODE,
                                                      nil];
}

id readErrors(PropertyOwner& owner) {
    const Problems problems = owner.takeProblems();
    return [NSDictionary
        dictionaryWithObjectsAndKeys:integer(static_cast<long long>(problems.count)), ZQM_SPEECH_ERROR_COUNT,
                                     integer(problems.oldest.code), ZQM_SPEECH_ERROR_OLDEST_CODE,
                                     integer(static_cast<long long>(problems.oldest.position)),
                                     ZQM_SPEECH_ERROR_OLDEST_CHARACTER_OFFSET, integer(problems.newest.code),
                                     ZQM_SPEECH_ERROR_NEWEST_CODE,
                                     integer(static_cast<long long>(problems.newest.position)),
                                     ZQM_SPEECH_ERROR_NEWEST_CHARACTER_OFFSET, nil];
}

id readRecentSync(PropertyOwner& owner) {
    return integer(owner.recentSync());
}

// ---- what the synthesizer is

id readSynthesizerInfo(PropertyOwner&) {
    const EngineInfo info = engineInfo();
    return [NSDictionary
        dictionaryWithObjectsAndKeys:stringOf(info.name), ZQM_SPEECH_SYNTHESIZER_INFO_IDENTIFIER,
                                     stringOf(info.version), ZQM_SPEECH_SYNTHESIZER_INFO_VERSION, nil];
}

id readPhonemeSymbols(PropertyOwner&) {
    NSMutableArray* const symbols = [NSMutableArray array];
    for (const protocol::PhonemeSymbol& symbol : protocol::phonemeSymbols()) {
        [symbols
            addObject:[NSDictionary
                          dictionaryWithObjectsAndKeys:integer(symbol.opcode), ZQM_SPEECH_PHONEME_INFO_OPCODE,
                                                       stringOf(std::string(symbol.symbol)),
                                                       ZQM_SPEECH_PHONEME_INFO_SYMBOL,
                                                       stringOf(std::string(symbol.example)),
                                                       ZQM_SPEECH_PHONEME_INFO_EXAMPLE,
                                                       integer(static_cast<long long>(symbol.hiliteStart)),
                                                       ZQM_SPEECH_PHONEME_INFO_HILITE_START,
                                                       integer(static_cast<long long>(symbol.hiliteEnd)),
                                                       ZQM_SPEECH_PHONEME_INFO_HILITE_END, nil]];
    }
    return symbols;
}

// ---- what is only set

Outcome writeCurrentVoice(PropertyOwner& owner, id value) {
    NSString* const identifier = as<NSString>([as<NSDictionary>(value) objectForKey:ZQM_VOICE_IDENTIFIER]);
    if (identifier == nil) {
        return Refusal{};
    }
    if (owner.isSpeaking()) {
        return Refusal{Code::NotReady, @"The voice can't change while a text is being spoken."};
    }
    if (!owner.setVoice(identifier)) {
        return Refusal{Code::VoiceNotFound,
                       [NSString stringWithFormat:@"There is no voice \"%@\".", identifier]};
    }
    return std::nullopt;
}

bool isDelimiter(NSString* text) {
    constexpr NSUInteger kMostCharacters = 2;
    NSUInteger characters = 0;
    for (NSUInteger index = 0; index < [text length]; ++characters) {
        index += [text rangeOfComposedCharacterSequenceAtIndex:index].length;
    }
    return characters > 0 && characters <= kMostCharacters;
}

Outcome writeCommandDelimiter(PropertyOwner& owner, id value) {
    NSDictionary* const given = as<NSDictionary>(value);
    NSString* const prefix = as<NSString>([given objectForKey:ZQM_SPEECH_COMMAND_PREFIX]);
    NSString* const suffix = as<NSString>([given objectForKey:ZQM_SPEECH_COMMAND_SUFFIX]);
    const bool disables = prefix != nil && suffix != nil && [prefix length] == 0 && [suffix length] == 0;
    if (!disables && !(isDelimiter(prefix) && isDelimiter(suffix))) {
        return Refusal{};
    }
    owner.setDelimiters({utf8Of(prefix), utf8Of(suffix)});
    return std::nullopt;
}

Outcome writeReset(PropertyOwner& owner, id value) {
    if (!isNothing(value)) {
        return Refusal{};
    }
    owner.reset();
    return std::nullopt;
}

Outcome writeOutput(PropertyOwner& owner, id value) {
    NSURL* const url = as<NSURL>(value);
    if (!isNothing(value) && (url == nil || !pathOf(url))) {
        return Refusal{};
    }
    owner.setOutput(url);
    return std::nullopt;
}

// ---- the table

struct Property {
    NSString* key;
    id (*read)(PropertyOwner& owner);                 // null: write-only
    Outcome (*write)(PropertyOwner& owner, id value); // null: read-only
    NSString* takes;                                  // for people
};

constexpr int kLeastRate = 1;
constexpr int kGreatestRate = std::numeric_limits<int>::max();

const Property kProperties[] = {
    {ZQM_SPEECH_STATUS_PROPERTY, readStatus, nullptr, nil},
    {ZQM_SPEECH_ERRORS_PROPERTY, readErrors, nullptr, nil},
    {ZQM_SPEECH_INPUT_MODE_PROPERTY, readMode<&Manner::input>, writeMode<&Manner::input>,
     @"\"TEXT\" or \"PHON\""},
    {ZQM_SPEECH_CHARACTER_MODE_PROPERTY, readMode<&Manner::characters>, writeMode<&Manner::characters>,
     @"\"NORM\" or \"LTRL\""},
    {ZQM_SPEECH_NUMBER_MODE_PROPERTY, readMode<&Manner::numbers>, writeMode<&Manner::numbers>,
     @"\"NORM\" or \"LTRL\""},
    {ZQM_SPEECH_RATE_PROPERTY, readNumber<&Manner::rate>,
     writeNumber<&Manner::rate, kLeastRate, kGreatestRate>, @"a number of words a minute"},
    {ZQM_SPEECH_PITCH_BASE_PROPERTY, readNumber<&Manner::pitchBase>, writeNumber<&Manner::pitchBase, 1, 127>,
     @"a number from 1 to 127"},
    {ZQM_SPEECH_PITCH_MOD_PROPERTY, readNumber<&Manner::pitchModulation>,
     writeNumber<&Manner::pitchModulation, 0, 127>, @"a number from 0 to 127"},
    {ZQM_SPEECH_VOLUME_PROPERTY, readNumber<&Manner::volume>, writeNumber<&Manner::volume, 0, 1>,
     @"a number from 0 to 1"},
    {ZQM_SPEECH_SYNTHESIZER_INFO_PROPERTY, readSynthesizerInfo, nullptr, nil},
    {ZQM_SPEECH_RECENT_SYNC_PROPERTY, readRecentSync, nullptr, nil},
    {ZQM_SPEECH_PHONEME_SYMBOLS_PROPERTY, readPhonemeSymbols, nullptr, nil},
    {ZQM_SPEECH_CURRENT_VOICE_PROPERTY, nullptr, writeCurrentVoice,
     @"a dictionary with the identifier of a voice"},
    {ZQM_SPEECH_COMMAND_DELIMITER_PROPERTY, nullptr, writeCommandDelimiter,
     @"a dictionary with a prefix and a suffix of one or two characters each, or both empty"},
    {ZQM_SPEECH_RESET_PROPERTY, nullptr, writeReset, @"nothing"},
    {ZQM_SPEECH_OUTPUT_TO_FILE_URL_PROPERTY, nullptr, writeOutput, @"the URL of a file here, or nothing"},
};

const Property* find(NSString* key) {
    for (const Property& property : kProperties) {
        if ([property.key isEqual:key]) {
            return &property;
        }
    }
    return nullptr;
}

void report(NSError** error, Code code, NSString* description) {
    if (error != nullptr) {
        NSDictionary* const info = [NSDictionary dictionaryWithObject:description
                                                               forKey:NSLocalizedDescriptionKey];
        *error = [NSError errorWithDomain:NSOSStatusErrorDomain
                                     code:static_cast<NSInteger>(code)
                                 userInfo:info];
    }
}

NSString* unknown(NSString* key) {
    return key != nil ? [NSString stringWithFormat:@"There is no speech property \"%@\".", key]
                      : @"No speech property is named.";
}

} // namespace

id readProperty(PropertyOwner& owner, NSString* key, NSError** error) {
    const Property* const property = find(key);
    if (property != nullptr && property->read != nullptr) {
        return property->read(owner);
    }
    report(error, Code::UnknownProperty,
           property == nullptr
               ? unknown(key)
               : [NSString stringWithFormat:@"The speech property \"%@\" can only be set.", key]);
    return nil;
}

BOOL writeProperty(PropertyOwner& owner, NSString* key, id value, NSError** error) {
    const Property* const property = find(key);
    if (property == nullptr || property->write == nullptr) {
        report(error, Code::UnknownProperty,
               property == nullptr
                   ? unknown(key)
                   : [NSString stringWithFormat:@"The speech property \"%@\" can only be read.", key]);
        return NO;
    }
    const Outcome refusal = property->write(owner, value);
    if (!refusal) {
        return YES;
    }
    report(error, refusal->code,
           refusal->description != nil
               ? refusal->description
               : [NSString stringWithFormat:@"The speech property \"%@\" takes %@.", key, property->takes]);
    return NO;
}

} // namespace zqm::platform
