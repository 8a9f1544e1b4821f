#include "bridge/host_object_to_cocoa.h"

#include "bridge/dictionaries.h"
#include "bridge/file_urls.h"
#include "bridge/host_classes.h"
#include "bridge/host_value_objects.h"
#include "bridge/sibling_methods.h"
#include "bridge/wrapper_objects.h"
#include "plugin/host_handles.h"
#include "plugin/memory_blocks.h"

#include <array>

namespace {

using Converter = id (*)(REALobject object);

struct ConvertibleClass {
    const char* name;
    Converter convert;
};

id carried(REALobject wrapper) {
    return wrappedObject(wrapper);
}

// Nil for an empty block.
id copiedBytes(REALobject block) {
    const OwnedObject lock = locked(block);
    const std::int64_t size = memoryBlockSize(block);
    const void* bytes = MyREALMemoryBlockGetPtr(block);
    if (bytes == nullptr || size <= 0) {
        return nil;
    }
    return [NSData dataWithBytes:bytes length:static_cast<NSUInteger>(size)];
}

bool isFolderItem(REALobject object) {
    return REALLoadObjectMethod(object, "TrueItem(Index as integer) as Folderitem") != nullptr;
}

// Nil where no sibling has brought the method.
template <typename Send>
id timeValue(SEL method, Send&& send) {
    return [NSValue respondsToSelector:method] ? send() : nil;
}

id qtTime(REALobject object) {
    return timeValue(@selector(valueWithQTTimeZQM:), [&] { return [NSValue valueWithQTTimeZQM:object]; });
}

id qtTimeRange(REALobject object) {
    return timeValue(@selector(valueWithQTTimeRangeZQM:),
                     [&] { return [NSValue valueWithQTTimeRangeZQM:object]; });
}

id cmTimeMapping(REALobject object) {
    return timeValue(@selector(valueWithCMTimeMappingZQM:),
                     [&] { return [NSValue valueWithCMTimeMappingZQM:object]; });
}

id cmTimeRange(REALobject object) {
    return timeValue(@selector(valueWithCMTimeRangeZQM:),
                     [&] { return [NSValue valueWithCMTimeRangeZQM:object]; });
}

id cmTime(REALobject object) {
    return timeValue(@selector(valueWithCMTimeZQM:), [&] { return [NSValue valueWithCMTimeZQM:object]; });
}

id size(REALobject object) {
    return [NSValue valueWithSize:hostValue<NSSize>(object)];
}

id rect(REALobject object) {
    return [NSValue valueWithRect:hostValue<NSRect>(object)];
}

id range(REALobject object) {
    return [NSValue valueWithRange:hostValue<NSRange>(object)];
}

id point(REALobject object) {
    return [NSValue valueWithPoint:hostValue<NSPoint>(object)];
}

// Tested after the wrapper classes whose references are kept, in this order.
constexpr std::array kConvertibleClasses = std::to_array<ConvertibleClass>({
    {"WebUIDelegateZQM", carried},
    {"WebResourceLoadDelegateZQM", carried},
    {"WebFrameLoadDelegateZQM", carried},
    {"WebDownloadDelegateZQM", carried},
    {"DRBurnZQM", carried},
    {"PDFAnnotationZQM", carried},
    {"PDFActionZQM", carried},
    {"NSSizeZQM", size},
    {"NSRectZQM", rect},
    {"NSRangeZQM", range},
    {"NSPointZQM", point},
    {"QTKitTimeZQM", qtTime},
    {"QTKitTimeRangeZQM", qtTimeRange},
    {"CMTimeMappingZQM", cmTimeMapping},
    {"CMTimeRangeZQM", cmTimeRange},
    {"CMTimeZQM", cmTime},
    {"WebPolicyDelegateZQM", carried},
    {"CFObjectZQM", carried},
    {"CGColorZQM", carried},
    {"CGFontZQM", carried},
    {"CGImageZQM", carried},
    {"CGColorSpaceZQM", carried},
    {"CGPathZQM", carried},
    {"CGContextZQM", carried},
    {"CGLayerZQM", carried},
});

id carrierOf(REALobject object) {
    const Class carrier = hostObjectCarrierClass();
    return [carrier wrap:object];
}

} // namespace

id GetObjectAsNSObject(REALobject object) {
    if (object != nullptr && isOfHostClass(object, "MemoryBlock")) {
        return copiedBytes(object);
    }
    if (isFolderItem(object)) {
        return NewNSURLfile(object);
    }
    if (object != nullptr && isOfHostClass(object, "Dictionary")) {
        return NewNSDictionary(object);
    }
    if (isOfKeptWrapperClass(object)) {
        return object != nullptr ? carried(object) : nil;
    }
    if (object != nullptr) {
        for (const ConvertibleClass& convertible : kConvertibleClasses) {
            if (isOfHostClass(object, convertible.name)) {
                return convertible.convert(object);
            }
        }
    }
    return carrierOf(object);
}
