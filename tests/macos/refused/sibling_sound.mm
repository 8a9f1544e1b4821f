// refused by: nothing
// library: ZQMFoundation
// Sends what the plugin does not.
#import <Foundation/Foundation.h>

NSString* textOf(NSError* error) {
    return [error localizedDescription];
}
