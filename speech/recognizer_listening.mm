// What a recognizer listens for, and when.

#include "plugin/array_elements.h"
#include "plugin/guard.h"
#include "plugin/host_handles.h"
#include "plugin/platform_strings.h"
#include "plugin/string_arrays.h"
#include "speech/recognizer_data.h"
#include "speech/recognizer_members.h"

#include <algorithm>

namespace {

// Autoreleased; nil for no array.
NSMutableArray* platformStrings(REALarray array) {
    if (array == nullptr) {
        return nil;
    }
    const std::int64_t upperBound = REALGetArrayUBound(array);
    const auto capacity = static_cast<NSUInteger>(std::max<std::int64_t>(upperBound, -1)) + 1;
    NSMutableArray* list = [NSMutableArray arrayWithCapacity:capacity];
    if (list == nil) {
        return nil;
    }
    takeElements<REALGetArrayString>(array, upperBound, [&](REALstring element) {
        const OwnedString string{element};
        if (NSString* text = platformString(string.get())) {
            [list addObject:text];
        }
        return true;
    });
    return list;
}

} // namespace

REALarray commands(REALobject self) {
    return guarded([&] { return newStringArray([&] { return [recognizerOf(self) commands]; }); });
}

void setCommands(REALobject self, REALarray commands) {
    guarded([&] {
        MyNSSpeechRecognizerZQM* recognizer = recognizerOf(self);
        if (recognizer != nil) {
            [recognizer setCommands:platformStrings(commands)];
        }
    });
}

void startListening(REALobject self) {
    guarded([&] { [recognizerOf(self) startListening]; });
}

void stopListening(REALobject self) {
    guarded([&] { [recognizerOf(self) stopListening]; });
}
