// Sets of characters.

#ifndef ZQM_CFCHARACTERSET_H
#define ZQM_CFCHARACTERSET_H

#include <CoreFoundation/CFBase.h>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): Apple's names

CF_EXTERN_C_BEGIN

typedef const struct __CFCharacterSet* CFCharacterSetRef;

// The number of this kind of object, as CFGetTypeID answers it.
CF_EXPORT CFTypeID CFCharacterSetGetTypeID(void);

CF_EXTERN_C_END

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

#endif
