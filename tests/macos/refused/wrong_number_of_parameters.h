// refused by: declarations
// message: CFGetRetainCount: takes 2 parameters, recorded are 1
#include <CoreFoundation/CoreFoundation.h>

extern "C" CFIndex CFGetRetainCount(CFTypeRef object, CFIndex index);
