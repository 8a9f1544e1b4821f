// refused by: declarations
// message: CFStringGetCharacterAtIndex: parameter 2 is int, recorded is long
#include <CoreFoundation/CoreFoundation.h>

extern "C" UniChar CFStringGetCharacterAtIndex(CFStringRef string, int index);
