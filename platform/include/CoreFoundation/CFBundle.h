// Bundles.

#ifndef ZQM_CFBUNDLE_H
#define ZQM_CFBUNDLE_H

#include <CoreFoundation/CFBase.h>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): Apple's names

CF_EXTERN_C_BEGIN

typedef struct __CFBundle* CFBundleRef;

// The number of this kind of object, as CFGetTypeID answers it.
CF_EXPORT CFTypeID CFBundleGetTypeID(void);

CF_EXTERN_C_END

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

#endif
