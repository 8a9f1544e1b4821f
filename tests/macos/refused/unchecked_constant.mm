// refused by: sources
// message: unchecked_constant.mm:6: NSVoiceLanguage is named without platformConstant(&NSVoiceLanguage)
#import <AppKit/AppKit.h>

NSString* language() {
    return NSVoiceLanguage;
}
