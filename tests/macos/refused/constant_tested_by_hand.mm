// refused by: sources
// message: NSSpeechModeText is named without platformConstant(&NSSpeechModeText)
#import <AppKit/AppKit.h>

NSString* mode() {
    return &NSSpeechModeText != nullptr ? @"NSSpeechModeText" : nil;
}
