// refused by: declarations
// message: CFStringCreateWithFormat: only one of declaration and record takes further arguments (...)
#include <CoreFoundation/CoreFoundation.h>

extern "C" CFStringRef CFStringCreateWithFormat(CFAllocatorRef allocator, CFDictionaryRef options,
                                                CFStringRef format);
