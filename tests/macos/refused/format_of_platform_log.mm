// refused by: compiler
// message: should not be used as format arguments
#import <Foundation/Foundation.h>

void log(NSUInteger count) {
    NSLog(@"%d", count);
}
