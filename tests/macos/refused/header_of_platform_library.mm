// refused by: sources
// message: header_of_platform_library.mm:3: includes platform/CoreFoundation/CFString.h
#include "platform/CoreFoundation/CFString.h"
