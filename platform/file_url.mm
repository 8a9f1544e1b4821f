#include "platform/file_url.h"

#include "platform/foundation_text.h"

namespace zqm::platform {
namespace {

bool sameButCase(NSString* left, NSString* right) {
    return left != nil && [left caseInsensitiveCompare:right] == NSOrderedSame;
}

} // namespace

// Foundation's own test for a file URL minds the case.
std::optional<std::string> pathOf(NSURL* url) {
    NSString* const path = sameButCase([url scheme], @"file") ? [url path] : nil;
    NSString* const host = [url host];
    const bool isLocal = [host length] == 0 || sameButCase(host, @"localhost");
    std::string bytes = path != nil ? utf8Of(path) : std::string();
    // Foundation ends a path at a NUL: another file than the one named.
    const bool holdsNul = [[url absoluteString] rangeOfString:@"%00"].location != NSNotFound;
    if (!isLocal || holdsNul || !bytes.starts_with('/')) {
        return std::nullopt;
    }
    if ([[url absoluteString] hasSuffix:@"/"] && !bytes.ends_with('/')) {
        bytes += '/'; // a folder, which Foundation's path does not tell
    }
    return bytes;
}

} // namespace zqm::platform
