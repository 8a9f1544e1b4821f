// refused by: rules
// message: these are imported weakly, but must be there: _CFURLGetString
#include <CoreFoundation/CoreFoundation.h>

extern "C" CFStringRef CFURLGetString(CFURLRef url) __attribute__((weak_import));

CFStringRef textOf(CFURLRef url) {
    return &CFURLGetString != nullptr ? CFURLGetString(url) : nullptr;
}
