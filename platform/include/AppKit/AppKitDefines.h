// How AppKit's headers declare what the library exports.

#ifndef ZQM_APPKITDEFINES_H
#define ZQM_APPKITDEFINES_H

#ifdef __cplusplus
#define APPKIT_EXTERN extern "C" __attribute__((visibility("default")))
#else
#define APPKIT_EXTERN extern __attribute__((visibility("default")))
#endif

#endif
