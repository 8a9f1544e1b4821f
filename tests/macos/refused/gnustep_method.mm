// refused by: compiler
// message: instance method '-stringByTrimmingSpaces' not found
#import <Foundation/Foundation.h>

NSUInteger lengthWithoutSpaces(NSString* text) {
    return [[text stringByTrimmingSpaces] length];
}
