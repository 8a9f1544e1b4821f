// refused by: compiler
// message: 'NSArray' may not respond to 'objectForKey:'
#import <Foundation/Foundation.h>

id lookUp(NSArray* array) {
    return [array objectForKey:@"key"];
}
