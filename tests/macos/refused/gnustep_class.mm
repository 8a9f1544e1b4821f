// refused by: linker
// message: undefined symbol: _OBJC_CLASS_$_GSMimeParser
#import <Foundation/Foundation.h>

@interface GSMimeParser : NSObject
@end

id parser() {
    return [[GSMimeParser alloc] init];
}
