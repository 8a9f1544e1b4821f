// The headers must do for a program in C.
#include <CoreServices/CoreServices.h>
#include <CoreText/CoreText.h>
#include <zqmplatform/listening.h>
#include <zqmplatform/speaking.h>
#include <zqmplatform/type_instances.h>

_Static_assert(sizeof(CFIndex) == 8, "CFIndex is a 64-bit long");
_Static_assert(sizeof(Boolean) == 1 && sizeof(UniChar) == 2 && sizeof(CFStringEncoding) == 4,
               "Apple's sizes");
_Static_assert(sizeof(FSRef) == 80 && sizeof(HFSUniStr255) == 512 && sizeof(FSCatalogInfo) == 148,
               "Apple's sizes");
_Static_assert(sizeof(CFTypeID) == 8 && sizeof(OSErr) == 2 && sizeof(OSStatus) == 4, "Apple's sizes");

CFIndex lengthOfHelloInC(void) {
    static const UInt8 kHello[] = {'H', 'e', 'l', 'l', 'o'};
    CFStringRef string = CFStringCreateWithBytes(kCFAllocatorDefault, kHello, 5, kCFStringEncodingASCII, 0);
    const CFIndex length = CFStringGetLength(string);
    CFRelease(string);
    return length;
}
