// URLs.

#ifndef ZQM_CFURL_H
#define ZQM_CFURL_H

#include <CoreFoundation/CFBase.h>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): Apple's names

CF_EXTERN_C_BEGIN

typedef const struct __CFURL* CFURLRef;

// The number of this kind of object, as CFGetTypeID answers it.
CF_EXPORT CFTypeID CFURLGetTypeID(void);

// A URL, relative to baseURL unless that is null. Null for a text that is no URL: it is empty, or holds a
// character that must be escaped (a space, anything beyond ASCII) or a percent sign without two hex digits.
CF_EXPORT CFURLRef CFURLCreateWithString(CFAllocatorRef allocator, CFStringRef string, CFURLRef baseURL);

// The text of the URL itself, without that of its base. Belongs to the URL.
CF_EXPORT CFStringRef CFURLGetString(CFURLRef url);

// ---- the path of a URL. All of these leave the base out of account and keep it, and so query and fragment.

// The last component, its escapes replaced, without a slash; "/" for the root, "" for a URL without a path.
// Null when the escaped bytes are no UTF-8.
CF_EXPORT CFStringRef CFURLCopyLastPathComponent(CFURLRef url);

// The URL of the folder that holds the last component, with a slash at its end. From a root, from "." and
// from ".." the way up is "../". Null for a URL without a path.
CF_EXPORT CFURLRef CFURLCreateCopyDeletingLastPathComponent(CFAllocatorRef allocator, CFURLRef url);

// Adds a component, escaping what must be; a slash in it parts two components. A directory gets a slash at
// its end. Null for a URL that can't have a path, and for a component with a lone surrogate.
CF_EXPORT CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef allocator, CFURLRef url,
                                                         CFStringRef component, Boolean isDirectory);

typedef CFIndex CFURLPathStyle;

enum { kCFURLPOSIXPathStyle = 0, kCFURLHFSPathStyle = 1, kCFURLWindowsPathStyle = 2 };

// The path, its escapes replaced, without a slash at its end. Null for the other styles, for a URL that can't
// have a path, and when the escaped bytes are no UTF-8.
CF_EXPORT CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle pathStyle);

// ---- the files that URLs mean

struct FSRef;

// The file URL of a path of bufLen bytes, whatever bytes: no UTF-8 is escaped like any other. A path that is
// not absolute is relative to the working directory of this moment. A directory gets a slash at its end, and
// others lose it. Null for an empty path and for one with a NUL.
CF_EXPORT CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, const UInt8* buffer,
                                                           CFIndex bufLen, Boolean isDirectory);

// The file URL of an existing item, with a slash at its end if that is a folder. Null when the item is gone,
// and for what is no reference.
CF_EXPORT CFURLRef CFURLCreateFromFSRef(CFAllocatorRef allocator, const struct FSRef* fsRef);

// Refers to the item of a file URL; to a link itself where it is the last component, whether or not it leads
// anywhere. Names are found as they are, or else composed, decomposed, or with the same letters in any other
// way. False, and fsRef unchanged, when there is no such item, or the URL is not of a file of this machine.
CF_EXPORT Boolean CFURLGetFSRef(CFURLRef url, struct FSRef* fsRef);

CF_EXTERN_C_END

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

#endif
