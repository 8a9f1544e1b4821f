// Wrapper classes without members of their own.

#include "siblings/foundation/records.h"
#include "siblings/foundation/wrapper.h"

namespace {

constinit ClassRecord records[] = {
    wrapperClass("NSAttributedStringZQM"), wrapperClass("NSBundleZQM"),
    wrapperClass("NSCalendarZQM"),         wrapperClass("NSCharacterSetZQM"),
    wrapperClass("NSFileHandleZQM"),       wrapperClass("NSFileManagerZQM"),
    wrapperClass("NSIndexSetZQM"),         wrapperClass("NSLocaleZQM"),
    wrapperClass("NSMutableIndexSetZQM"),  wrapperClass("NSNotificationCenterZQM"),
    wrapperClass("NSNotificationZQM"),     wrapperClass("NSPredicateZQM"),
    wrapperClass("NSTimeZoneZQM"),         wrapperClass("NSUserDefaultsZQM"),
};

} // namespace

std::span<ClassRecord> wrapperClasses() {
    return records;
}
