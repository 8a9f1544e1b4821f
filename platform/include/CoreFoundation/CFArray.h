// Arrays.

#ifndef ZQM_CFARRAY_H
#define ZQM_CFARRAY_H

#include <CoreFoundation/CFBase.h>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): Apple's names

CF_EXTERN_C_BEGIN

typedef const struct __CFArray* CFArrayRef;

// The number of this kind of object, as CFGetTypeID answers it.
CF_EXPORT CFTypeID CFArrayGetTypeID(void);

CF_EXTERN_C_END

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

#endif
