#pragma once

#include <CoreFoundation/CFBase.h>

typedef const struct __CFAttributedString* CFAttributedStringRef;

MACOS_C_BEGIN

CFTypeID CFAttributedStringGetTypeID(void) MACOS_AVAILABLE(introduced = 10.4);

MACOS_C_END
