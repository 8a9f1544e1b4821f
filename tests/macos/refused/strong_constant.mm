// refused by: rules
// message: these must be imported weakly, but are imported strongly: _NSVoiceName
#import <Foundation/Foundation.h>

#define PLANTED_NAME(name) NSVoice##name

extern "C" NSString* const PLANTED_NAME(Name);

NSString* voiceName() {
    return PLANTED_NAME(Name);
}
