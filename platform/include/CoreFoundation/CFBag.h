// Bags: sets that hold equal values several times.

#ifndef ZQM_CFBAG_H
#define ZQM_CFBAG_H

#include <CoreFoundation/CFBase.h>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): Apple's names

CF_EXTERN_C_BEGIN

typedef const struct __CFBag* CFBagRef;

// The number of this kind of object, as CFGetTypeID answers it.
CF_EXPORT CFTypeID CFBagGetTypeID(void);

CF_EXTERN_C_END

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

#endif
