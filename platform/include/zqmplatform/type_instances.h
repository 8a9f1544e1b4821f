// For tests of programs that tell objects apart by CFGetTypeID. Plain C.

#ifndef ZQM_TYPE_INSTANCES_H
#define ZQM_TYPE_INSTANCES_H

#include <CoreFoundation/CoreFoundation.h>

CF_EXTERN_C_BEGIN

// Some object of which CFGetTypeID answers this number, with a reference that the caller releases. Null for
// numbers of no kind.
CF_EXPORT CFTypeRef ZQMPlatformCreateInstanceOfType(CFTypeID type);

CF_EXTERN_C_END

#endif
