#pragma once

#include <CoreFoundation/CFBase.h>

typedef const struct __CFCharacterSet* CFCharacterSetRef;

MACOS_C_BEGIN

CFTypeID CFCharacterSetGetTypeID(void);

MACOS_C_END
