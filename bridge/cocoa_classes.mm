#include "bridge/cocoa_classes.h"

#include "bridge/class_memo.h"
#include "bridge/platform_class.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <objc/runtime.h>

namespace {

// In this order the first that matches decides, so a class behind one of its superclasses never does.
constexpr std::array kCocoaClasses = std::to_array<CocoaClass>({
    {"NSPathComponentCell", WrapRule::Direct},
    {"NSPathCell", WrapRule::Direct},
    {"NSPathControl", WrapRule::Direct},
    {"NSPipe", WrapRule::Direct},
    {"NSTask", WrapRule::Direct},
    {"NSFileHandle", WrapRule::Direct},
    {"NSClipView", WrapRule::Direct},
    {"NSAnimation", WrapRule::Direct},
    {"NSCoder", WrapRule::Direct},
    {"NSTimeZone", WrapRule::Direct},
    {"NSDateComponents", WrapRule::Direct},
    {"NSAnimationContext", WrapRule::Direct},
    {"NSTimer", WrapRule::Direct},
    {"NSBox", WrapRule::Direct},
    {"NSComboBox", WrapRule::Direct},
    {"NSImageView", WrapRule::Direct},
    {"NSPopUpButton", WrapRule::Direct},
    {"NSTextField", WrapRule::Direct},
    {"NSSearchFieldCell", WrapRule::Direct},
    {"NSSecureTextField", WrapRule::Direct},
    {"NSSecureTextFieldCell", WrapRule::Direct},
    {"NSApplication", WrapRule::Direct},
    {"NSSearchField", WrapRule::Direct},
    {"NSTabView", WrapRule::Direct},
    {"NSTabViewItem", WrapRule::Direct},
    {"NSStepper", WrapRule::Direct},
    {"NSURLRequest", WrapRule::Direct},
    {"NSURLDownload", WrapRule::Direct},
    {"NSURLConnection", WrapRule::Direct},
    {"NSFontPanel", WrapRule::Direct},
    {"NSFontManager", WrapRule::Direct},
    {"NSImage", WrapRule::Direct},
    {"NSImageRep", WrapRule::Chain},
    {"NSShadow", WrapRule::Direct},
    {"NSAffineTransform", WrapRule::Direct},
    {"NSFont", WrapRule::Direct},
    {"NSToolbarItem", WrapRule::Direct},
    {"NSToolbar", WrapRule::Direct},
    {"NSScreen", WrapRule::Direct},
    {"NSCharacterSet", WrapRule::Direct},
    {"NSTextStorage", WrapRule::Direct},
    {"NSColor", WrapRule::Direct},
    {"NSAttributedString", WrapRule::Chain},
    {"NSAssertionHandler", WrapRule::Direct},
    {"NSMenu", WrapRule::Direct},
    {"NSFontDescriptor", WrapRule::Direct},
    {"NSMenuItem", WrapRule::Direct},
    {"NSError", WrapRule::Error},
    {"NSViewController", WrapRule::Direct},
    {"NSWindowController", WrapRule::Direct},
    {"NSHTTPCookie", WrapRule::Direct},
    {"NSHTTPCookieStorage", WrapRule::Direct},
    {"NSPasteboard", WrapRule::Direct},
    {"NSBundle", WrapRule::Direct},
    {"NSEnumerator", WrapRule::Direct},
    {"NSDirectoryEnumerator", WrapRule::Direct},
    {"NSRunningApplication", WrapRule::Direct},
    {"NSURLCache", WrapRule::Direct},
    {"NSCell", WrapRule::Chain},
    {"NSFileManager", WrapRule::Direct},
    {"NSSound", WrapRule::Direct},
    {"NSBezierPath", WrapRule::Direct},
    {"NSCursor", WrapRule::Direct},
    {"NSEvent", WrapRule::Direct},
    {"NSIndexSet", WrapRule::Chain},
    {"NSCalendar", WrapRule::Direct},
    {"NSView", WrapRule::View},
    {"NSWindow", WrapRule::Chain},
    {"NSColorList", WrapRule::Direct},
    {"NSColorSpace", WrapRule::Direct},
    {"NSTableColumn", WrapRule::Direct},
    {"NSUndoManager", WrapRule::Direct},
    {"NSScroller", WrapRule::Direct},
    {"NSResponder", WrapRule::Chain},
    {"NSTextFieldCell", WrapRule::Chain},
    {"NSText", WrapRule::Chain},
    {"NSTableHeaderView", WrapRule::Direct},
    {"NSOperation", WrapRule::Direct},
    {"NSNotification", WrapRule::Direct},
    {"NSNotificationCenter", WrapRule::Chain},
    {"NSDistributedNotificationCenter", WrapRule::Direct},
    {"NSUserDefaults", WrapRule::Direct},
    {"NSDockTile", WrapRule::Direct},
    {"NSLocale", WrapRule::Direct},
    {"NSAppleEventDescriptor", WrapRule::Direct},
    {"NSAppleScript", WrapRule::Direct},
    {"NSTableView", WrapRule::Direct},
    {"NSLayoutManager", WrapRule::Direct},
    {"NSTextContainer", WrapRule::Direct},
    {"NSTextView", WrapRule::Chain},
    {"NSTextTab", WrapRule::Direct},
    {"NSParagraphStyle", WrapRule::Direct},
    {"NSPasteboardItem", WrapRule::Direct},
    {"NSRunLoop", WrapRule::Direct},
    {"NSMetadataQuery", WrapRule::Direct},
    {"NSMetadataItem", WrapRule::Direct},
    {"NSPredicate", WrapRule::Direct},
    {"NSCompoundPredicate", WrapRule::Direct},
    {"NSSortDescriptor", WrapRule::Direct},
    {"NSMetadataQueryResultGroup", WrapRule::Direct},
    {"NSComparisonPredicate", WrapRule::Direct},
    {"NSFileWrapper", WrapRule::Direct},
    {"NSTextAttachment", WrapRule::Direct},
    {"NSExpression", WrapRule::Direct},
});

const CocoaClass* rowOfName(const char* name) {
    const auto* row = std::find_if(kCocoaClasses.begin(), kCocoaClasses.end(), [name](const CocoaClass& one) {
        return std::strcmp(one.name, name) == 0;
    });
    return row != kCocoaClasses.end() ? row : nullptr;
}

const CocoaClass* rowByQuestions(NSObject* object) {
    const auto* row = std::find_if(kCocoaClasses.begin(), kCocoaClasses.end(), [&](const CocoaClass& one) {
        const Class type = platformClass(one.name);
        return type != Nil && [object isKindOfClass:type];
    });
    return row != kCocoaClasses.end() ? row : nullptr;
}

const CocoaClass* rowByAncestors(Class type) {
    const CocoaClass* first = nullptr;
    for (Class level = type; level != Nil; level = class_getSuperclass(level)) {
        const CocoaClass* row = rowOfName(class_getName(level));
        if (row != nullptr && (first == nullptr || row < first)) {
            first = row;
        }
    }
    return first;
}

} // namespace

const CocoaClass* cocoaClassOf(NSObject* object) {
    // The last row of the table then costs no more than the first.
    static ClassMemo<CocoaClass> known;
    return known.rowOf(object, [](NSObject* one) {
        const Class type = object_getClass(one);
        return answersForItself(type) ? rowByQuestions(one) : rowByAncestors(type);
    });
}
