// refused by: rules
// message: these must be imported weakly, but are not imported: _NSVoiceName
#import <Foundation/Foundation.h>

#define PLANTED_NAME(name) NSVoice##name

extern "C" {
extern NSString* const PLANTED_NAME(Name);
NSString* const PLANTED_NAME(Name) = @"name";
}
