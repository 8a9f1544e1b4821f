// The Cocoa classes whose objects have wrapper classes of their own, as documented: the first in this order
// that an object is one of decides.

#pragma once

namespace documented {

enum class Wrapping {
    Direct, // always the wrapper class of this class, one wrapper for one object
    Chain,  // the wrapper class of the most derived class that has one, a new wrapper each time
    Error,  // as Direct
    View,   // as Chain, unless a sibling library knows better
};

struct CocoaClass {
    const char* name;
    Wrapping wrapping;
};

inline constexpr CocoaClass kCocoaClasses[] = {
    {"NSPathComponentCell", Wrapping::Direct},
    {"NSPathCell", Wrapping::Direct},
    {"NSPathControl", Wrapping::Direct},
    {"NSPipe", Wrapping::Direct},
    {"NSTask", Wrapping::Direct},
    {"NSFileHandle", Wrapping::Direct},
    {"NSClipView", Wrapping::Direct},
    {"NSAnimation", Wrapping::Direct},
    {"NSCoder", Wrapping::Direct},
    {"NSTimeZone", Wrapping::Direct},
    {"NSDateComponents", Wrapping::Direct},
    {"NSAnimationContext", Wrapping::Direct},
    {"NSTimer", Wrapping::Direct},
    {"NSBox", Wrapping::Direct},
    {"NSComboBox", Wrapping::Direct},
    {"NSImageView", Wrapping::Direct},
    {"NSPopUpButton", Wrapping::Direct},
    {"NSTextField", Wrapping::Direct},
    {"NSSearchFieldCell", Wrapping::Direct},
    {"NSSecureTextField", Wrapping::Direct},
    {"NSSecureTextFieldCell", Wrapping::Direct},
    {"NSApplication", Wrapping::Direct},
    {"NSSearchField", Wrapping::Direct},
    {"NSTabView", Wrapping::Direct},
    {"NSTabViewItem", Wrapping::Direct},
    {"NSStepper", Wrapping::Direct},
    {"NSURLRequest", Wrapping::Direct},
    {"NSURLDownload", Wrapping::Direct},
    {"NSURLConnection", Wrapping::Direct},
    {"NSFontPanel", Wrapping::Direct},
    {"NSFontManager", Wrapping::Direct},
    {"NSImage", Wrapping::Direct},
    {"NSImageRep", Wrapping::Chain},
    {"NSShadow", Wrapping::Direct},
    {"NSAffineTransform", Wrapping::Direct},
    {"NSFont", Wrapping::Direct},
    {"NSToolbarItem", Wrapping::Direct},
    {"NSToolbar", Wrapping::Direct},
    {"NSScreen", Wrapping::Direct},
    {"NSCharacterSet", Wrapping::Direct},
    {"NSTextStorage", Wrapping::Direct},
    {"NSColor", Wrapping::Direct},
    {"NSAttributedString", Wrapping::Chain},
    {"NSAssertionHandler", Wrapping::Direct},
    {"NSMenu", Wrapping::Direct},
    {"NSFontDescriptor", Wrapping::Direct},
    {"NSMenuItem", Wrapping::Direct},
    {"NSError", Wrapping::Error},
    {"NSViewController", Wrapping::Direct},
    {"NSWindowController", Wrapping::Direct},
    {"NSHTTPCookie", Wrapping::Direct},
    {"NSHTTPCookieStorage", Wrapping::Direct},
    {"NSPasteboard", Wrapping::Direct},
    {"NSBundle", Wrapping::Direct},
    {"NSEnumerator", Wrapping::Direct},
    {"NSDirectoryEnumerator", Wrapping::Direct},
    {"NSRunningApplication", Wrapping::Direct},
    {"NSURLCache", Wrapping::Direct},
    {"NSCell", Wrapping::Chain},
    {"NSFileManager", Wrapping::Direct},
    {"NSSound", Wrapping::Direct},
    {"NSBezierPath", Wrapping::Direct},
    {"NSCursor", Wrapping::Direct},
    {"NSEvent", Wrapping::Direct},
    {"NSIndexSet", Wrapping::Chain},
    {"NSCalendar", Wrapping::Direct},
    {"NSView", Wrapping::View},
    {"NSWindow", Wrapping::Chain},
    {"NSColorList", Wrapping::Direct},
    {"NSColorSpace", Wrapping::Direct},
    {"NSTableColumn", Wrapping::Direct},
    {"NSUndoManager", Wrapping::Direct},
    {"NSScroller", Wrapping::Direct},
    {"NSResponder", Wrapping::Chain},
    {"NSTextFieldCell", Wrapping::Chain},
    {"NSText", Wrapping::Chain},
    {"NSTableHeaderView", Wrapping::Direct},
    {"NSOperation", Wrapping::Direct},
    {"NSNotification", Wrapping::Direct},
    {"NSNotificationCenter", Wrapping::Chain},
    {"NSDistributedNotificationCenter", Wrapping::Direct},
    {"NSUserDefaults", Wrapping::Direct},
    {"NSDockTile", Wrapping::Direct},
    {"NSLocale", Wrapping::Direct},
    {"NSAppleEventDescriptor", Wrapping::Direct},
    {"NSAppleScript", Wrapping::Direct},
    {"NSTableView", Wrapping::Direct},
    {"NSLayoutManager", Wrapping::Direct},
    {"NSTextContainer", Wrapping::Direct},
    {"NSTextView", Wrapping::Chain},
    {"NSTextTab", Wrapping::Direct},
    {"NSParagraphStyle", Wrapping::Direct},
    {"NSPasteboardItem", Wrapping::Direct},
    {"NSRunLoop", Wrapping::Direct},
    {"NSMetadataQuery", Wrapping::Direct},
    {"NSMetadataItem", Wrapping::Direct},
    {"NSPredicate", Wrapping::Direct},
    {"NSCompoundPredicate", Wrapping::Direct},
    {"NSSortDescriptor", Wrapping::Direct},
    {"NSMetadataQueryResultGroup", Wrapping::Direct},
    {"NSComparisonPredicate", Wrapping::Direct},
    {"NSFileWrapper", Wrapping::Direct},
    {"NSTextAttachment", Wrapping::Direct},
    {"NSExpression", Wrapping::Direct},
};

// Looked up once in a process, behind those above.
inline constexpr const char* kOptionalClasses[] = {
    "NSUserNotification", "NSDraggingImageComponent", "QuartzFilter",
    "QCComposition",      "QCCompositionRepository",
};

} // namespace documented
