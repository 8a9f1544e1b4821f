// Numbers and truth values.

#ifndef ZQM_CFNUMBER_H
#define ZQM_CFNUMBER_H

#include <CoreFoundation/CFBase.h>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): Apple's names

CF_EXTERN_C_BEGIN

typedef const struct __CFBoolean* CFBooleanRef;
typedef const struct __CFNumber* CFNumberRef;

// The only two of their kind, so that they may be compared by address.
CF_EXPORT const CFBooleanRef kCFBooleanTrue;
CF_EXPORT const CFBooleanRef kCFBooleanFalse;

// The number of this kind of object, as CFGetTypeID answers it.
CF_EXPORT CFTypeID CFBooleanGetTypeID(void);
CF_EXPORT CFTypeID CFNumberGetTypeID(void);

CF_EXTERN_C_END

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

#endif
