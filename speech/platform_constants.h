// The platform's string constants, linked weakly: on a system that lacks one of them the library loads all
// the same, and the constant's address is null.
//
// Reading such a constant would crash, and a compiler may take an address of a constant declared elsewhere
// for one that is never null. So nothing in the plugin names a constant in any other way than
// platformConstant(&NAME), which tests the address first.

#pragma once

#import <AppKit/AppKit.h>

#define SPEECH_CONSTANT(constant) extern "C" NSString* const constant __attribute__((weak));
#define VOICE_CONSTANT(method, constant) SPEECH_CONSTANT(constant)
#include "speech/speech_constants.def"
#include "speech/voice_constants.def"
#undef SPEECH_CONSTANT
#undef VOICE_CONSTANT

// Borrowed; nil where the system lacks the constant.
inline NSString* platformConstant(NSString* const* constant) {
    return constant != nullptr ? *constant : nil;
}
