// How AppKit's headers declare what the library exports.
//
// In sources it has Apple's names. For the linker and the Objective-C runtime it has names of its own:
// GNUstep's library for user interfaces has classes and constants of Apple's names too, which are not the
// same, and of two that have one name each program in a process gets the one that was loaded first.

#ifndef ZQM_APPKITDEFINES_H
#define ZQM_APPKITDEFINES_H

#ifdef __cplusplus
#define APPKIT_EXTERN extern "C" __attribute__((visibility("default")))
#else
#define APPKIT_EXTERN extern __attribute__((visibility("default")))
#endif

#define APPKIT_CONSTANT(type, name) APPKIT_EXTERN type const name __asm__("ZQM" #name)

#endif
