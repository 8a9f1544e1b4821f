// Host strings and platform strings, and how each becomes the other. Encodings are CoreFoundation numbers.

#pragma once

#include "plugin/host_interface.h"

#include <CoreFoundation/CoreFoundation.h>
#include <cstdint>

// A new CFString that the caller releases; null for a null string. A string without encoding is read as
// MacRoman.
CFStringRef RBString2CFString(REALstring string);

// A new host string in UTF-8, with one lock that is the caller's; null for a null or empty string and for
// text that UTF-8 can't represent. The text ends at its first NUL.
REALstring CFString2RBString(CFStringRef string);

// A new host string, with one lock that is the caller's, from `length` bytes in an encoding; null for null
// data and for a length outside 1 to 2,147,483,647. UTF-16 (in the machine's byte order) and UTF-32 arrive
// as UTF-8; in every other encoding the bytes stay as they are. A native failure is raised into the host.
REALstring REALBuildUnicodeString(const void* data, std::int64_t length, std::uint32_t encoding);

// The same for UTF-16 in the machine's byte order. `length` is in bytes; only its low 32 bits count.
REALstring REALBuildUnicodeStringUTF16(const void* data, std::int64_t length);

// The number of bytes of a host string; 0 where the host can't tell.
std::int64_t hostStringByteLength(REALstring string);
