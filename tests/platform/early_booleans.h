#pragma once

#include <CoreFoundation/CoreFoundation.h>

CF_EXTERN_C_BEGIN

CF_EXPORT CFBooleanRef booleanSeenWhenLoaded(int value);

CF_EXTERN_C_END
