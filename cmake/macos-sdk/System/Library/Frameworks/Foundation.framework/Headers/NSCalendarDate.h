#pragma once

#import <Foundation/NSDate.h>

@class NSTimeZone;

MACOS_AVAILABLE(introduced = 10.4, deprecated = 10.10)
@interface NSCalendarDate : NSDate
+ (id)dateWithYear:(NSInteger)year
             month:(NSUInteger)month
               day:(NSUInteger)day
              hour:(NSUInteger)hour
            minute:(NSUInteger)minute
            second:(NSUInteger)second
          timeZone:(NSTimeZone*)aTimeZone;
- (NSInteger)dayOfMonth;
- (NSInteger)hourOfDay;
- (NSInteger)minuteOfHour;
- (NSInteger)monthOfYear;
- (NSInteger)secondOfMinute;
- (NSInteger)yearOfCommonEra;
@end
