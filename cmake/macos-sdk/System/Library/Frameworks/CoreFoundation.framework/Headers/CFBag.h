#pragma once

#include <CoreFoundation/CFBase.h>

typedef const struct __CFBag* CFBagRef;

MACOS_C_BEGIN

CFTypeID CFBagGetTypeID(void);

MACOS_C_END
