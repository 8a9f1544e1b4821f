// The part of CoreText that this project uses, under Apple's names, for systems that have none of their own:
// how its objects are told apart. Plain C.

#ifndef ZQM_CORETEXT_H
#define ZQM_CORETEXT_H

#include <CoreFoundation/CoreFoundation.h>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): Apple's names

CF_EXTERN_C_BEGIN

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

// The number of each kind of object, as CFGetTypeID answers it.
CF_EXPORT CFTypeID CTFontGetTypeID(void);
CF_EXPORT CFTypeID CTFontCollectionGetTypeID(void);
CF_EXPORT CFTypeID CTFrameGetTypeID(void);
CF_EXPORT CFTypeID CTFramesetterGetTypeID(void);
CF_EXPORT CFTypeID CTGlyphInfoGetTypeID(void);
CF_EXPORT CFTypeID CTLineGetTypeID(void);
CF_EXPORT CFTypeID CTParagraphStyleGetTypeID(void);
CF_EXPORT CFTypeID CTRunGetTypeID(void);
CF_EXPORT CFTypeID CTRunDelegateGetTypeID(void);
CF_EXPORT CFTypeID CTTypesetterGetTypeID(void);

CF_EXTERN_C_END

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

#endif
