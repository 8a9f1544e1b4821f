// refused by: declarations
// message: kCFAllocatorNull: is const CFStringRef, recorded is CFAllocatorRef
#include <CoreFoundation/CoreFoundation.h>

extern "C" const CFStringRef kCFAllocatorNull;
