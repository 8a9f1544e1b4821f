// refused by: compiler
// message: no matching function for call to 'CFURLCreateWithString'
#include <CoreFoundation/CoreFoundation.h>

CFURLRef make(CFStringRef text) {
    return CFURLCreateWithString(nullptr, text);
}
