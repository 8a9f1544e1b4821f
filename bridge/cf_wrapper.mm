#include "bridge/cf_wrapper.h"

#include "plugin/host_handles.h"
#include "plugin/instance_data.h"
#include "plugin/platform_guard.h"

#include <CoreFoundation/CoreFoundation.h>
#include <CoreText/CoreText.h>
#import <Foundation/Foundation.h>
#include <algorithm>
#include <array>

// What CoreFoundation's own objects answer to; other objects don't.
@interface NSObject (ZQMCoreFoundationType)
- (CFTypeID)_cfTypeID;
@end

namespace {

// The constructor of a class that can hold a CoreFoundation reference sets the marker.
struct CFWrapperData {
    CFTypeRef reference;
    std::uint64_t ownedByItsClass;
    std::uint64_t marker;
};
constexpr std::uint64_t kMarker = 0x52424346;

constexpr const char* kAnyType = "CFObjectZQM";

struct CFWrapperClass {
    CFTypeID (*type)();
    const char* hostClass;
};

constexpr std::array kWrapperClasses = std::to_array<CFWrapperClass>({
    {CFURLGetTypeID, "CFURLZQM"},
    {CFDictionaryGetTypeID, "CFDictionaryZQM"},
    {CFStringGetTypeID, "CFStringZQM"},
    {CFNumberGetTypeID, "CFNumberZQM"},
    {CFArrayGetTypeID, "CFArrayZQM"},
    {CFBooleanGetTypeID, "CFBooleanZQM"},
    {CFDataGetTypeID, "CFBinaryDataZQM"},
    {CFCharacterSetGetTypeID, "CFCharacterSetZQM"},
    {CFBundleGetTypeID, "CFBundleZQM"},
    {CFSetGetTypeID, "CFSetZQM"},
    {CFBagGetTypeID, "CFBagZQM"},
    {CFUUIDGetTypeID, "CFUUIDZQM"},
    {CFTimeZoneGetTypeID, "CFTimeZoneZQM"},
    {CFDateGetTypeID, "CFDateZQM"},
    {CFAttributedStringGetTypeID, "CFAttributedStringZQM"},
    {CFErrorGetTypeID, "CFErrorZQM"},
    {CTFontGetTypeID, "CTFontZQM"},
    {CTFontCollectionGetTypeID, "CTFontCollectionZQM"},
    {CTFrameGetTypeID, "CTFrameZQM"},
    {CTFramesetterGetTypeID, "CTFramesetterZQM"},
    {CTGlyphInfoGetTypeID, "CTGlyphInfoZQM"},
    {CTLineGetTypeID, "CTLineZQM"},
    {CTParagraphStyleGetTypeID, "CTParagraphStyleZQM"},
    {CTRunGetTypeID, "CTRunZQM"},
    {CTTypesetterGetTypeID, "CTTypesetterZQM"},
    {CTRunDelegateGetTypeID, "CTRunDelegateZQM"},
});

OwnedObject newInstanceForType(CFTypeID type) {
    const auto* row = std::find_if(kWrapperClasses.begin(), kWrapperClasses.end(),
                                   [type](const CFWrapperClass& one) { return one.type() == type; });
    OwnedObject instance;
    if (row != kWrapperClasses.end()) {
        instance = OwnedObject{REALnewInstance(row->hostClass)};
    }
    return instance ? std::move(instance) : OwnedObject{REALnewInstance(kAnyType)};
}

bool isCoreFoundations(NSObject* object) {
    return [object respondsToSelector:@selector(_cfTypeID)] && [object _cfTypeID] >= 1;
}

REALobject newCFWrapper(CFTypeRef reference) {
    OwnedObject wrapper = newInstanceForType(CFGetTypeID(reference));
    if (!wrapper) {
        return nullptr;
    }
    auto& data = instanceData<CFWrapperData>(wrapper.get());
    if (data.marker != kMarker) {
        return nullptr;
    }
    data.marker = kMarker;
    data.reference = CFRetain(reference);
    return wrapper.release();
}

} // namespace

std::optional<REALobject> cfWrapper(NSObject* object) {
    std::optional<REALobject> wrapper;
    runUnderPlatformGuard([&] {
        if (isCoreFoundations(object)) {
            wrapper = newCFWrapper(reinterpret_cast<CFTypeRef>(object));
        }
    });
    return wrapper;
}
