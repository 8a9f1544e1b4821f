// Errors.

#ifndef ZQM_CFERROR_H
#define ZQM_CFERROR_H

#include <CoreFoundation/CFBase.h>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): Apple's names

CF_EXTERN_C_BEGIN

typedef struct __CFError* CFErrorRef;

// The number of this kind of object, as CFGetTypeID answers it.
CF_EXPORT CFTypeID CFErrorGetTypeID(void);

CF_EXTERN_C_END

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

#endif
