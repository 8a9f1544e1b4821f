// refused by: golden
// message: imports.txt does not list: CoreFoundation _CFURLGetString
#include <CoreFoundation/CoreFoundation.h>

CFStringRef textOf(CFURLRef url) {
    return CFURLGetString(url);
}
