#include "platform/url_object.h"

#include "platform/autorelease_pool.h"

namespace zqm::platform {
namespace {

std::string textOf(NSString* string) {
    const char* const text = [string UTF8String];
    return text != nullptr ? text : "";
}

} // namespace

CFURLRef newUrl(const std::string& text, NSURL* base) {
    CFURLRef url = nullptr;
    runInPool([&] {
        NSString* const string = [NSString stringWithUTF8String:text.c_str()];
        url = CFURLCreateWithString(nullptr, (CFStringRef)string, (CFURLRef)base);
    });
    return url;
}

std::string textOfUrl(NSURL* url) {
    std::string text;
    runInPool([&] { text = textOf([url relativeString]); });
    return text;
}

std::string absoluteTextOfUrl(NSURL* url) {
    std::string text;
    runInPool([&] { text = textOf([url absoluteString]); });
    return text;
}

} // namespace zqm::platform
