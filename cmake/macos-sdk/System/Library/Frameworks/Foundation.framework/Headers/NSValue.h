#pragma once

#import <Foundation/NSGeometry.h>
#import <Foundation/NSObject.h>
#import <Foundation/NSRange.h>

@interface NSValue : NSObject <NSCopying>
- (const char*)objCType;
@end

@interface NSValue (NSValueRangeExtensions)
+ (NSValue*)valueWithRange:(NSRange)range;
- (NSRange)rangeValue;
@end

@interface NSValue (NSValueGeometryExtensions)
+ (NSValue*)valueWithPoint:(NSPoint)point;
+ (NSValue*)valueWithSize:(NSSize)size;
+ (NSValue*)valueWithRect:(NSRect)rect;
- (NSPoint)pointValue;
- (NSSize)sizeValue;
- (NSRect)rectValue;
@end

@interface NSNumber : NSValue
- (unsigned char)unsignedCharValue;
- (short)shortValue;
- (unsigned short)unsignedShortValue;
- (int)intValue;
- (unsigned int)unsignedIntValue;
- (long)longValue;
- (unsigned long)unsignedLongValue;
- (float)floatValue;
- (double)doubleValue;
- (BOOL)boolValue;
+ (NSNumber*)numberWithLong:(long)value;
+ (NSNumber*)numberWithLongLong:(long long)value;
+ (NSNumber*)numberWithFloat:(float)value;
+ (NSNumber*)numberWithDouble:(double)value;
+ (NSNumber*)numberWithBool:(BOOL)value;
@end
