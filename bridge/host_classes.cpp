#include "bridge/host_classes.h"

#include "plugin/entry_points.h"

#include <array>

namespace {

constexpr std::array kWrapperClasses = std::to_array<const char*>({"NSPathComponentCellZQM",
                                                                   "NSPathCellZQM",
                                                                   "NSPathControlZQM",
                                                                   "NSPipeZQM",
                                                                   "NSTaskZQM",
                                                                   "NSFileHandleZQM",
                                                                   "NSClipViewZQM",
                                                                   "NSAnimationZQM",
                                                                   "NSCoderZQM",
                                                                   "NSTimeZoneZQM",
                                                                   "NSDateComponentsZQM",
                                                                   "NSAnimationContextZQM",
                                                                   "NSTimerZQM",
                                                                   "NSBoxZQM",
                                                                   "NSComboBoxZQM",
                                                                   "NSImageViewZQM",
                                                                   "NSPopUpButtonZQM",
                                                                   "NSTextFieldZQM",
                                                                   "NSSearchFieldCellZQM",
                                                                   "NSSecureTextFieldZQM",
                                                                   "NSSecureTextFieldCellZQM",
                                                                   "NSApplicationZQM",
                                                                   "NSSearchFieldZQM",
                                                                   "NSTabViewZQM",
                                                                   "NSTabViewItemZQM",
                                                                   "NSStepperZQM",
                                                                   "NSURLRequestZQM",
                                                                   "NSURLDownloadZQM",
                                                                   "NSURLConnectionZQM",
                                                                   "NSFontPanelZQM",
                                                                   "NSFontManagerZQM",
                                                                   "NSImageZQM",
                                                                   "NSImageRepZQM",
                                                                   "NSAffineTransformZQM",
                                                                   "NSFontZQM",
                                                                   "NSToolbarItemZQM",
                                                                   "NSShadowZQM",
                                                                   "NSToolbarZQM",
                                                                   "NSScreenZQM",
                                                                   "NSCharacterSetZQM",
                                                                   "NSTextStorageZQM",
                                                                   "NSColorZQM",
                                                                   "NSAttributedStringZQM",
                                                                   "NSAssertionHandlerZQM",
                                                                   "NSMenuZQM",
                                                                   "NSFontDescriptorZQM",
                                                                   "NSMenuItemZQM",
                                                                   "NSErrorZQM",
                                                                   "NSViewControllerZQM",
                                                                   "NSWindowControllerZQM",
                                                                   "NSHTTPCookieZQM",
                                                                   "NSHTTPCookieStorageZQM",
                                                                   "NSPasteboardZQM",
                                                                   "NSBundleZQM",
                                                                   "NSEnumeratorZQM",
                                                                   "NSDirectoryEnumeratorZQM",
                                                                   "NSRunningApplicationZQM",
                                                                   "NSURLCacheZQM",
                                                                   "NSCellZQM",
                                                                   "NSFileManagerZQM",
                                                                   "NSSoundZQM",
                                                                   "NSBezierPathZQM",
                                                                   "NSCursorZQM",
                                                                   "NSEventZQM",
                                                                   "NSIndexSetZQM",
                                                                   "NSCalendarZQM",
                                                                   "NSViewZQM",
                                                                   "NSWindowZQM",
                                                                   "NSColorListZQM",
                                                                   "NSColorSpaceZQM",
                                                                   "NSTableColumnZQM",
                                                                   "NSUndoManagerZQM",
                                                                   "NSScrollerZQM",
                                                                   "NSResponderZQM",
                                                                   "NSFileWrapperZQM",
                                                                   "NSTextAttachmentZQM",
                                                                   "NSTextFieldCellZQM",
                                                                   "NSTextZQM",
                                                                   "NSTableHeaderViewZQM",
                                                                   "NSOperationZQM",
                                                                   "NSNotificationZQM",
                                                                   "NSNotificationCenterZQM",
                                                                   "NSDistributedNotificationCenterZQM",
                                                                   "QuartzFilterZQM",
                                                                   "QCCompositionRepositoryZQM",
                                                                   "QCCompositionZQM",
                                                                   "NSUserDefaultsZQM",
                                                                   "NSDockTileZQM",
                                                                   "NSLocaleZQM",
                                                                   "NSAppleEventDescriptorZQM",
                                                                   "NSAppleScriptZQM",
                                                                   "NSTableViewZQM",
                                                                   "NSLayoutManagerZQM",
                                                                   "NSTextContainerZQM",
                                                                   "NSTextViewZQM",
                                                                   "NSTextTabZQM",
                                                                   "NSParagraphStyleZQM",
                                                                   "NSDraggingImageComponentZQM",
                                                                   "NSPasteboardItemZQM",
                                                                   "NSRunLoopZQM",
                                                                   "NSMetadataQueryZQM",
                                                                   "NSMetadataItemZQM",
                                                                   "NSPredicateZQM",
                                                                   "NSCompoundPredicateZQM",
                                                                   "NSSortDescriptorZQM",
                                                                   "NSMetadataQueryResultGroupZQM",
                                                                   "NSComparisonPredicateZQM",
                                                                   "NSExpressionZQM"});

struct KeptReference {
    bool isLookedUp = false;
    REALclassRef reference = nullptr;
};
std::array<KeptReference, kWrapperClasses.size()> keptReferences;

bool isOf(REALobject object, REALclassRef reference) {
    return reference != nullptr && REALObjectIsA(object, reference);
}

} // namespace

bool isOfHostClass(REALobject object, const char* name) {
    return isOf(object, REALGetClassRef(name));
}

bool isOfKeptWrapperClass(REALobject object) {
    if (!REALGetClassRef.isAvailable()) {
        return false;
    }
    for (std::size_t i = 0; i < kWrapperClasses.size(); ++i) {
        KeptReference& kept = keptReferences[i];
        if (!kept.isLookedUp) {
            kept = {true, REALGetClassRef(kWrapperClasses[i])};
        }
        if (isOf(object, kept.reference)) {
            return true;
        }
    }
    return false;
}
