#pragma once

#include <CoreFoundation/CoreFoundation.h>

enum {
    noErr = 0,
    nsvErr = -35,
    ioErr = -36,
    bdNamErr = -37,
    fnfErr = -43,
    paramErr = -50,
    permErr = -54,
    pathTooLongErr = -2110
};

typedef SInt16 FSVolumeRefNum;
typedef UInt32 TextEncoding;
typedef struct __FSFileSecurity* FSFileSecurityRef;

#pragma pack(push, 2)

struct FSRef {
    UInt8 hidden[80];
};
typedef struct FSRef FSRef;

struct HFSUniStr255 {
    UInt16 length;
    UniChar unicode[255];
};
typedef struct HFSUniStr255 HFSUniStr255;

struct FSSpec {
    UInt8 hidden[70];
};
typedef struct FSSpec FSSpec;
typedef FSSpec* FSSpecPtr;

struct UTCDateTime {
    UInt16 highSeconds;
    UInt32 lowSeconds;
    UInt16 fraction;
};
typedef struct UTCDateTime UTCDateTime;

struct FSPermissionInfo {
    UInt32 userID;
    UInt32 groupID;
    UInt8 reserved1;
    UInt8 userAccess;
    UInt16 mode;
    FSFileSecurityRef fileSec;
};
typedef struct FSPermissionInfo FSPermissionInfo;

struct FSCatalogInfo {
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
    unsigned long long dataLogicalSize;
    unsigned long long dataPhysicalSize;
    unsigned long long rsrcLogicalSize;
    unsigned long long rsrcPhysicalSize;
    UInt32 valence;
    TextEncoding textEncodingHint;
};
typedef struct FSCatalogInfo FSCatalogInfo;

#pragma pack(pop)

typedef UInt32 FSCatalogInfoBitmap;

enum { kFSCatInfoNone = 0x00000000, kFSCatInfoNodeID = 0x00000010 };

MACOS_C_BEGIN

OSErr FSGetCatalogInfo(const FSRef* ref, FSCatalogInfoBitmap whichInfo, FSCatalogInfo* catalogInfo,
                       HFSUniStr255* outName, FSSpecPtr fsSpec, FSRef* parentRef)
    MACOS_AVAILABLE(introduced = 10.0, deprecated = 10.8);
OSStatus FSRefMakePath(const FSRef* ref, UInt8* path, UInt32 pathBufferSize)
    MACOS_AVAILABLE(introduced = 10.0, deprecated = 10.8);
OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory)
    MACOS_AVAILABLE(introduced = 10.0, deprecated = 10.8);

MACOS_C_END
