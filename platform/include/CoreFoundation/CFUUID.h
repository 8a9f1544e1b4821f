// Universally unique identifiers.

#ifndef ZQM_CFUUID_H
#define ZQM_CFUUID_H

#include <CoreFoundation/CFBase.h>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): Apple's names

CF_EXTERN_C_BEGIN

typedef const struct __CFUUID* CFUUIDRef;

// The number of this kind of object, as CFGetTypeID answers it.
CF_EXPORT CFTypeID CFUUIDGetTypeID(void);

CF_EXTERN_C_END

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

#endif
