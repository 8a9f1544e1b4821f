#include "CoreFoundation/CoreFoundation.h"
#include "platform/unicode_forms.h"
#include "platform/url_object.h"
#include "platform/url_text.h"

using zqm::platform::escapedPath;
using zqm::platform::lastComponent;
using zqm::platform::newUrl;
using zqm::platform::pathInUrl;
using zqm::platform::textOfUrl;
using zqm::platform::UrlPath;

namespace {

CFStringRef newUnescapedString(std::string_view text) {
    const auto bytes = zqm::platform::unescaped(text);
    return bytes ? CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(bytes->data()),
                                           static_cast<CFIndex>(bytes->size()), kCFStringEncodingUTF8, 0)
                 : nullptr;
}

std::string_view part(std::string_view text, UrlPath place) {
    return text.substr(place.begin, place.size());
}

std::optional<std::string> utf8Of(CFStringRef string) {
    std::u16string units(static_cast<std::size_t>(CFStringGetLength(string)), u'\0');
    CFStringGetCharacters(string, CFRangeMake(0, CFStringGetLength(string)),
                          reinterpret_cast<UniChar*>(units.data()));
    return zqm::platform::utf8Of(units);
}

} // namespace

CFStringRef CFURLCopyLastPathComponent(CFURLRef url) {
    if (url == nullptr) {
        return nullptr;
    }
    const std::string text = textOfUrl((NSURL*)url);
    const UrlPath path = pathInUrl(text).value_or(UrlPath{});
    const UrlPath last = lastComponent(text, path);
    return newUnescapedString(last.size() == 0 && path.size() > 0 ? "/" : part(text, last));
}

CFURLRef CFURLCreateCopyDeletingLastPathComponent(CFAllocatorRef /*allocator*/, CFURLRef url) {
    std::string text = textOfUrl((NSURL*)url);
    const auto path = pathInUrl(text);
    if (!path || path->size() == 0) {
        return nullptr;
    }
    const UrlPath last = lastComponent(text, *path);
    const std::string_view name = part(text, last);
    if (name.empty() || name == "." || name == "..") {
        text.insert(path->end, text[path->end - 1] == '/' ? "../" : "/../");
    } else if (last.begin == path->begin) {
        text.replace(path->begin, path->size(), "./");
    } else {
        text.erase(last.begin, path->end - last.begin);
    }
    return newUrl(text, [(NSURL*)url baseURL]);
}

CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef /*allocator*/, CFURLRef url,
                                               CFStringRef component, Boolean isDirectory) {
    if (url == nullptr || component == nullptr) {
        return nullptr;
    }
    std::string text = textOfUrl((NSURL*)url);
    const auto path = pathInUrl(text);
    const auto name = utf8Of(component);
    if (!path || !name) {
        return nullptr;
    }
    std::string addition = part(text, *path).ends_with('/') ? "" : "/";
    addition += escapedPath(*name);
    if (isDirectory != 0 && !addition.ends_with('/')) {
        addition += '/';
    }
    return newUrl(text.insert(path->end, addition), [(NSURL*)url baseURL]);
}

CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle pathStyle) {
    const std::string text = textOfUrl((NSURL*)url);
    auto path = pathInUrl(text);
    if (url == nullptr || pathStyle != kCFURLPOSIXPathStyle || !path) {
        return nullptr;
    }
    while (path->size() > 1 && text[path->end - 1] == '/') {
        --path->end;
    }
    return newUnescapedString(part(text, *path));
}
