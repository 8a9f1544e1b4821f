#pragma once

#include <CoreFoundation/CoreFoundation.h>

typedef const struct __CTFont* CTFontRef;
typedef const struct __CTFontCollection* CTFontCollectionRef;
typedef const struct __CTFrame* CTFrameRef;
typedef const struct __CTFramesetter* CTFramesetterRef;
typedef const struct __CTGlyphInfo* CTGlyphInfoRef;
typedef const struct __CTLine* CTLineRef;
typedef const struct __CTParagraphStyle* CTParagraphStyleRef;
typedef const struct __CTRun* CTRunRef;
typedef const struct __CTRunDelegate* CTRunDelegateRef;
typedef const struct __CTTypesetter* CTTypesetterRef;

MACOS_C_BEGIN

CFTypeID CTFontGetTypeID(void) MACOS_AVAILABLE(introduced = 10.5);
CFTypeID CTFontCollectionGetTypeID(void) MACOS_AVAILABLE(introduced = 10.5);
CFTypeID CTFrameGetTypeID(void) MACOS_AVAILABLE(introduced = 10.5);
CFTypeID CTFramesetterGetTypeID(void) MACOS_AVAILABLE(introduced = 10.5);
CFTypeID CTGlyphInfoGetTypeID(void) MACOS_AVAILABLE(introduced = 10.5);
CFTypeID CTLineGetTypeID(void) MACOS_AVAILABLE(introduced = 10.5);
CFTypeID CTParagraphStyleGetTypeID(void) MACOS_AVAILABLE(introduced = 10.5);
CFTypeID CTRunGetTypeID(void) MACOS_AVAILABLE(introduced = 10.5);
CFTypeID CTRunDelegateGetTypeID(void) MACOS_AVAILABLE(introduced = 10.5);
CFTypeID CTTypesetterGetTypeID(void) MACOS_AVAILABLE(introduced = 10.5);

MACOS_C_END
