// The part of CoreServices that this project uses, under Apple's names, for systems that have none of their
// own: references to files. Plain C.

#ifndef ZQM_CORESERVICES_H
#define ZQM_CORESERVICES_H

#include <CoreFoundation/CoreFoundation.h>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): Apple's names

CF_EXTERN_C_BEGIN

// ---- results

enum {
    noErr = 0,
    nsvErr = -35,          // no such volume
    ioErr = -36,           // the system failed to read
    bdNamErr = -37,        // a name that is too long, or that is no Unicode text
    fnfErr = -43,          // no such file or folder
    paramErr = -50,        // a null pointer, or an FSRef that refers to nothing
    permErr = -54,         // a folder on the way may not be searched
    pathTooLongErr = -2110 // the path, for the system or for the caller's buffer
};

// ---- files

// Apple packs these records to 2 bytes.
#pragma pack(push, 2)

// A reference to an existing file or folder; what is in it is nobody's business but the File Manager's. It
// may be copied as bytes, and is worth nothing in another process. It goes by the item's path: an item that
// is moved or renamed is not found any more, and one that takes its place is.
typedef struct FSRef {
    UInt8 hidden[80];
} FSRef;

// A file name of up to 255 UTF-16 units.
typedef struct HFSUniStr255 {
    UInt16 length;
    UniChar unicode[255];
} HFSUniStr255;

// No function here looks at one.
typedef struct FSSpec {
    UInt8 hidden[70];
} FSSpec;
typedef FSSpec* FSSpecPtr;

typedef SInt16 FSVolumeRefNum;
typedef UInt32 TextEncoding;
typedef struct __FSFileSecurity* FSFileSecurityRef;

// In a catalogue record; always zero here.
typedef struct UTCDateTime {
    UInt16 highSeconds;
    UInt32 lowSeconds;
    UInt16 fraction;
} UTCDateTime;

// The same.
typedef struct FSPermissionInfo {
    UInt32 userID;
    UInt32 groupID;
    UInt8 reserved1;
    UInt8 userAccess;
    UInt16 mode;
    FSFileSecurityRef fileSec;
} FSPermissionInfo;

// What FSGetCatalogInfo fills in: nodeID at most.
typedef struct FSCatalogInfo {
    UInt16 nodeFlags;
    FSVolumeRefNum volume;
    UInt32 parentDirID;
    UInt32 nodeID;
    UInt8 sharingFlags;
    UInt8 userPrivileges;
    UInt8 reserved1;
    UInt8 reserved2;
    UTCDateTime createDate;
    UTCDateTime contentModDate;
    UTCDateTime attributeModDate;
    UTCDateTime accessDate;
    UTCDateTime backupDate;
    FSPermissionInfo permissions;
    UInt8 finderInfo[16];
    UInt8 extFinderInfo[16];
    uint64_t dataLogicalSize;
    uint64_t dataPhysicalSize;
    uint64_t rsrcLogicalSize;
    uint64_t rsrcPhysicalSize;
    UInt32 valence;
    TextEncoding textEncodingHint;
} FSCatalogInfo;

#pragma pack(pop)

typedef UInt32 FSCatalogInfoBitmap;

enum { kFSCatInfoNone = 0x00000000, kFSCatInfoNodeID = 0x00000010 };

// Tells of an existing item what is asked for; every pointer but ref may be null.
//
// catalogInfo: all zeros but nodeID, and that too unless whichInfo has kFSCatInfoNodeID. It is 2 for the root
//     of a volume ("/", and every folder where a file system is mounted), and never less than 16 for others.
// outName: the name, decomposed (form D) as Apple's are, unless that has no room; of a volume's root the name
//     of its folder, and "/" of the root of all. A name of bytes that are no UTF-8 gives bdNamErr.
// fsSpec: ignored, as on all 64-bit systems.
// parentRef: the folder that holds the item; may be ref itself. For the root of a volume it is set to a
//     reference that no function accepts.
//
// paramErr: ref is null, or no reference. fnfErr: the item is gone. Where an error is returned nothing is
// written.
CF_EXPORT OSErr FSGetCatalogInfo(const FSRef* ref, FSCatalogInfoBitmap whichInfo, FSCatalogInfo* catalogInfo,
                                 HFSUniStr255* outName, FSSpecPtr fsSpec, FSRef* parentRef);

// Writes the absolute path of an existing item, with a NUL at its end: as it is stored, so that the system's
// own functions find it. paramErr, fnfErr: as above, or path is null. pathTooLongErr: no room.
CF_EXPORT OSStatus FSRefMakePath(const FSRef* ref, UInt8* path, UInt32 pathBufferSize);

// Makes a reference to the item of a path, which must exist. A link is followed, also the last. Names are
// found as they are, or else composed, decomposed, or with the same letters in any other way. isDirectory may
// be null. On an error ref and isDirectory stay as they are.
CF_EXPORT OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory);

CF_EXTERN_C_END

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

#endif
