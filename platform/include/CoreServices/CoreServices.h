// The part of CoreServices that this project uses, under Apple's names, for systems that have none of their
// own. Plain C.

#ifndef ZQM_CORESERVICES_H
#define ZQM_CORESERVICES_H

#include <CoreFoundation/CoreFoundation.h>

CF_EXTERN_C_BEGIN

// A reference to an existing file or folder; what is in it is nobody's business but the File Manager's.
typedef struct FSRef {
    UInt8 hidden[80];
} FSRef;

// A file name of up to 255 UTF-16 units.
typedef struct HFSUniStr255 {
    UInt16 length;
    UniChar unicode[255];
} HFSUniStr255;

CF_EXTERN_C_END

#endif
