#include "CoreFoundation/CoreFoundation.h"
#include "platform/autorelease_pool.h"

#include <string_view>

namespace {

constexpr std::u16string_view kPunctuation = u"-_.~!*'();:@&=+$,/?#[]";

bool isDigitOrLetter(char16_t unit) {
    return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
}

bool isHexDigit(char16_t unit) {
    return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F') || (unit >= u'a' && unit <= u'f');
}

// Whether every character may stand in a URL as it is. Foundation is more lenient.
bool isEscaped(NSString* string) {
    const NSUInteger length = [string length];
    for (NSUInteger index = 0; index < length; ++index) {
        const char16_t unit = [string characterAtIndex:index];
        if (unit == u'%') {
            if (length - index < 3 || !isHexDigit([string characterAtIndex:index + 1]) ||
                !isHexDigit([string characterAtIndex:index + 2])) {
                return false;
            }
        } else if (!isDigitOrLetter(unit) && kPunctuation.find(unit) == std::u16string_view::npos) {
            return false;
        }
    }
    return true;
}

} // namespace

CFURLRef CFURLCreateWithString(CFAllocatorRef /*allocator*/, CFStringRef string, CFURLRef baseURL) {
    NSString* const text = (NSString*)string;
    if ([text length] == 0 || !isEscaped(text)) {
        return nullptr;
    }
    CFURLRef url = nullptr;
    zqm::platform::runInPool(
        [&] { url = (CFURLRef)[[NSURL alloc] initWithString:text relativeToURL:(NSURL*)baseURL]; });
    return url;
}

CFStringRef CFURLGetString(CFURLRef url) {
    return (CFStringRef)[(NSURL*)url relativeString];
}
