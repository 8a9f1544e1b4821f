// GNUstep finds the year of a date by trying one after the other: before the Common Era and far in the future
// it doesn't come to an end. Host programs can make any date, and what is logged is described. So dates out
// of the ordinary are described by one of another cycle of the calendar, which repeats itself every 400
// years.

#import <Foundation/Foundation.h>
#include <math.h>
#include <objc/runtime.h>

@interface ZQMFarDates : NSObject
@end

typedef NSString* (*Description)(NSDate*, SEL);
typedef NSString* (*LocalDescription)(NSDate*, SEL, id);

static Description description;
static LocalDescription localDescription;

static const double kSecondsOfCycle = 146097.0 * 24 * 60 * 60;
static const long long kYearsOfCycle = 400;

// From the reference date, 2001-01-01. The years 1601 to 9600.
static BOOL isNear(NSDate* date) {
    const double cycles = [date timeIntervalSinceReferenceDate] / kSecondsOfCycle;
    return cycles >= -1 && cycles < 19;
}

static NSString* farDescription(NSDate* date) {
    const double interval = [date timeIntervalSinceReferenceDate];
    if (!(fabs(interval) < 0x1p63)) {
        return [NSString stringWithFormat:@"%g s from 2001-01-01 00:00:00 +0000", interval];
    }
    const double cycle = floor(interval / kSecondsOfCycle);
    NSDate* const near = [NSDate dateWithTimeIntervalSinceReferenceDate:interval - cycle * kSecondsOfCycle];
    NSString* const text = description(near, @selector(description));
    const NSUInteger digits = [text rangeOfString:@"-"].location; // of its year
    const long long year = [[text substringToIndex:digits] longLongValue] + (long long)cycle * kYearsOfCycle;
    return [NSString stringWithFormat:@"%04lld%@", year, [text substringFromIndex:digits]];
}

static NSString* describe(NSDate* date, SEL selector) {
    return isNear(date) ? description(date, selector) : farDescription(date);
}

static NSString* describeInLocale(NSDate* date, SEL selector, id locale) {
    return isNear(date) ? localDescription(date, selector, locale) : farDescription(date);
}

static IMP exchange(SEL selector, IMP function) {
    return method_setImplementation(class_getInstanceMethod([NSDate class], selector), function);
}

@implementation ZQMFarDates

+ (void)load {
    description = (Description)exchange(@selector(description), (IMP)describe);
    localDescription = (LocalDescription)exchange(@selector(descriptionWithLocale:), (IMP)describeInLocale);
}

@end
