// refused by: compiler
// message: receiver type 'NSScanner' for instance message is a forward declaration
#import <Foundation/Foundation.h>

@class NSScanner;

NSUInteger hashOf(NSScanner* zone) {
    return [zone hash];
}
