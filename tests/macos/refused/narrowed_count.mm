// refused by: compiler
// message: loses integer precision: 'NSUInteger'
#import <Foundation/Foundation.h>

int count(NSArray* array) {
    return [array count];
}
