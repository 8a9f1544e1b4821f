#include "platform/delegate_messages.h"

#include "platform/foundation_text.h"
#include "platform/retained.h"

#include <algorithm>
#include <array>
#include <climits>

namespace zqm::platform {
namespace {

// A number of four characters as such, without the leading ones that are not there: 0x41 is "A".
NSString* charactersOf(std::uint32_t number) {
    std::array<char, sizeof number> bytes{};
    for (std::size_t index = bytes.size(); index > 0; number >>= CHAR_BIT) {
        bytes[--index] = static_cast<char>(number & UCHAR_MAX);
    }
    const auto first = std::find_if(bytes.begin(), bytes.end(), [](char byte) { return byte != 0; });
    // For Mac Roman Foundation opens a converter each time, which costs more than the rest of telling.
    const bool isAscii = std::all_of(first, bytes.end(),
                                     [](char byte) { return static_cast<unsigned char>(byte) <= SCHAR_MAX; });
    return [[[NSString alloc] initWithBytes:first
                                     length:static_cast<NSUInteger>(bytes.end() - first)
                                   encoding:isAscii ? NSASCIIStringEncoding : NSMacOSRomanStringEncoding]
        autorelease];
}

} // namespace

SEL selectorOf(SpeechEvent::Kind kind) {
    switch (kind) {
    case SpeechEvent::Kind::Word:
        return @selector(speechSynthesizer:willSpeakWord:ofString:);
    case SpeechEvent::Kind::Phoneme:
        return @selector(speechSynthesizer:willSpeakPhoneme:);
    case SpeechEvent::Kind::Problem:
        return @selector(speechSynthesizer:didEncounterErrorAtIndex:ofString:message:);
    case SpeechEvent::Kind::Sync:
        return @selector(speechSynthesizer:didEncounterSyncMessage:);
    case SpeechEvent::Kind::Finished:
        break;
    }
    return @selector(speechSynthesizer:didFinishSpeaking:);
}

void tell(id<NSSpeechSynthesizerDelegate> delegate, NSSpeechSynthesizer* object, const SpeechEvent& event,
          NSString* string) {
    const Retained keep(object);
    switch (event.kind) {
    case SpeechEvent::Kind::Word:
        [delegate speechSynthesizer:object
                      willSpeakWord:NSMakeRange(event.position, event.length)
                           ofString:string];
        break;
    case SpeechEvent::Kind::Phoneme:
        [delegate speechSynthesizer:object willSpeakPhoneme:static_cast<short>(event.value)];
        break;
    case SpeechEvent::Kind::Problem:
        [delegate speechSynthesizer:object
            didEncounterErrorAtIndex:event.position
                            ofString:string
                             message:stringOf(event.message)];
        break;
    case SpeechEvent::Kind::Sync:
        [delegate speechSynthesizer:object didEncounterSyncMessage:charactersOf(event.value)];
        break;
    case SpeechEvent::Kind::Finished:
        [delegate speechSynthesizer:object didFinishSpeaking:event.completed ? YES : NO];
        break;
    }
}

} // namespace zqm::platform
