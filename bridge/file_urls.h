// File URLs of the platform and FolderItems of the host.

#pragma once

#include "plugin/host_interface.h"

#include <CoreFoundation/CoreFoundation.h>

@class NSURL;

// The FolderItem of an existing file or folder, or of one that may be made in an existing folder; with one
// lock that is the caller's. Null for null, for a URL of no file and for one in a missing folder.
REALobject NSURLRBFile(CFURLRef url);

// The file URL of a FolderItem. Autoreleased; nil for null and for an item in a missing folder.
NSURL* NewNSURLfile(REALobject item);
