#include "platform/voice_attributes.h"

#include "platform/demo_texts.h"
#include "platform/foundation_text.h"
#include "platform/language_characters.h"
#include "platform/voice_strings.h"

namespace zqm::platform {
namespace {

NSString* genderOf(const protocol::Voice& voice) {
    if (voice.gender == "male") {
        return ZQM_VOICE_GENDER_MALE;
    }
    return voice.gender == "female" ? ZQM_VOICE_GENDER_FEMALE : ZQM_VOICE_GENDER_NEUTER;
}

NSArray* arrayOf(const std::vector<CharacterRange>& ranges) {
    NSMutableArray* const array = [NSMutableArray arrayWithCapacity:ranges.size()];
    for (const CharacterRange& range : ranges) {
        [array
            addObject:[NSDictionary dictionaryWithObjectsAndKeys:[NSNumber numberWithUnsignedInt:range.first],
                                                                 ZQM_CHARACTER_RANGE_BEGIN,
                                                                 [NSNumber numberWithUnsignedInt:range.last],
                                                                 ZQM_CHARACTER_RANGE_END, nil]];
    }
    return array;
}

} // namespace

NSDictionary* attributesOf(const protocol::Voice& voice) {
    NSMutableDictionary* const attributes = [NSMutableDictionary dictionary];
    NSString* const language = stringOf(voice.language);
    [attributes setObject:stringOf(voice.name) forKey:ZQM_VOICE_NAME];
    [attributes setObject:stringOf(voice.identifier) forKey:ZQM_VOICE_IDENTIFIER];
    [attributes setObject:genderOf(voice) forKey:ZQM_VOICE_GENDER];
    [attributes setObject:language forKey:ZQM_VOICE_LANGUAGE];
    [attributes setObject:[language stringByReplacingOccurrencesOfString:@"-" withString:@"_"]
                   forKey:ZQM_VOICE_LOCALE_IDENTIFIER];
    if (voice.age > 0) {
        [attributes setObject:[NSNumber numberWithInt:voice.age] forKey:ZQM_VOICE_AGE];
    }
    if (const std::string_view text = demoText(voice.language); !text.empty()) {
        [attributes setObject:stringOf(std::string(text)) forKey:ZQM_VOICE_DEMO_TEXT];
    }
    const LanguageCharacters characters = charactersOf(voice.language);
    [attributes setObject:arrayOf(characters.all) forKey:ZQM_VOICE_SUPPORTED_CHARACTERS];
    [attributes setObject:arrayOf(characters.spelled) forKey:ZQM_VOICE_INDIVIDUALLY_SPOKEN_CHARACTERS];
    return attributes;
}

} // namespace zqm::platform
