// The part of CoreFoundation that this project uses, under Apple's names, for systems that have no
// CoreFoundation of their own. Plain C: a host needs no Objective-C to use it.
//
// Objects are GNUstep's Foundation objects ("toll-free"): a CFStringRef is an NSString, a CFDictionaryRef an
// NSDictionary, a CFURLRef an NSURL, and the functions take any object of those classes. Kinds that
// Foundation has no class for are objects of the class ZQMCFType. A function with Create or Copy in its name
// gives one reference that the caller releases; nothing else gives one away. Allocators are accepted and
// ignored.

#ifndef ZQM_COREFOUNDATION_H
#define ZQM_COREFOUNDATION_H

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFAttributedString.h>
#include <CoreFoundation/CFBag.h>
#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFBundle.h>
#include <CoreFoundation/CFCharacterSet.h>
#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFDate.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFError.h>
#include <CoreFoundation/CFNumber.h>
#include <CoreFoundation/CFRunLoop.h>
#include <CoreFoundation/CFSet.h>
#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFTimeZone.h>
#include <CoreFoundation/CFURL.h>
#include <CoreFoundation/CFUUID.h>

#endif
