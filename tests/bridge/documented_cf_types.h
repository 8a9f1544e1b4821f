// The host classes of CoreFoundation's and CoreText's objects, as documented.

#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <CoreText/CoreText.h>

namespace documented {

struct CFType {
    const char* kind;
    CFTypeID (*type)();
    const char* hostClass;
};

inline constexpr CFType kCFTypes[] = {
    {"CFURL", CFURLGetTypeID, "CFURLZQM"},
    {"CFDictionary", CFDictionaryGetTypeID, "CFDictionaryZQM"},
    {"CFString", CFStringGetTypeID, "CFStringZQM"},
    {"CFNumber", CFNumberGetTypeID, "CFNumberZQM"},
    {"CFArray", CFArrayGetTypeID, "CFArrayZQM"},
    {"CFBoolean", CFBooleanGetTypeID, "CFBooleanZQM"},
    {"CFData", CFDataGetTypeID, "CFBinaryDataZQM"},
    {"CFCharacterSet", CFCharacterSetGetTypeID, "CFCharacterSetZQM"},
    {"CFBundle", CFBundleGetTypeID, "CFBundleZQM"},
    {"CFSet", CFSetGetTypeID, "CFSetZQM"},
    {"CFBag", CFBagGetTypeID, "CFBagZQM"},
    {"CFUUID", CFUUIDGetTypeID, "CFUUIDZQM"},
    {"CFTimeZone", CFTimeZoneGetTypeID, "CFTimeZoneZQM"},
    {"CFDate", CFDateGetTypeID, "CFDateZQM"},
    {"CFAttributedString", CFAttributedStringGetTypeID, "CFAttributedStringZQM"},
    {"CFError", CFErrorGetTypeID, "CFErrorZQM"},
    {"CTFont", CTFontGetTypeID, "CTFontZQM"},
    {"CTFontCollection", CTFontCollectionGetTypeID, "CTFontCollectionZQM"},
    {"CTFrame", CTFrameGetTypeID, "CTFrameZQM"},
    {"CTFramesetter", CTFramesetterGetTypeID, "CTFramesetterZQM"},
    {"CTGlyphInfo", CTGlyphInfoGetTypeID, "CTGlyphInfoZQM"},
    {"CTLine", CTLineGetTypeID, "CTLineZQM"},
    {"CTParagraphStyle", CTParagraphStyleGetTypeID, "CTParagraphStyleZQM"},
    {"CTRun", CTRunGetTypeID, "CTRunZQM"},
    {"CTTypesetter", CTTypesetterGetTypeID, "CTTypesetterZQM"},
    {"CTRunDelegate", CTRunDelegateGetTypeID, "CTRunDelegateZQM"},
};

} // namespace documented
