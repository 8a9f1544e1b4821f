// refused by: audit
// message: OBJC_CLASS_$_NSPlanted comes from Foundation, but the record does not know it
// link option: {folder}/stubs/Foundation.tbd
#import <Foundation/Foundation.h>

@interface NSPlanted : NSObject
@end

id planted() {
    return [[NSPlanted alloc] init];
}
