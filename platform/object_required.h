// For functions that can do nothing with null.

#pragma once

#include "CoreFoundation/CFBase.h"

namespace zqm::platform {

// Null for an object is a fault of the program; on Apple's systems it ends there too.
void requireObject(CFTypeRef object, const char* function);

} // namespace zqm::platform
