// Moments.

#ifndef ZQM_CFDATE_H
#define ZQM_CFDATE_H

#include <CoreFoundation/CFBase.h>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): Apple's names

CF_EXTERN_C_BEGIN

typedef const struct __CFDate* CFDateRef;

// The number of this kind of object, as CFGetTypeID answers it.
CF_EXPORT CFTypeID CFDateGetTypeID(void);

CF_EXTERN_C_END

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

#endif
