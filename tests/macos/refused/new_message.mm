// refused by: golden
// message: selectors_sent.txt does not list: retainCount
#import <Foundation/Foundation.h>

NSUInteger owners(id object) {
    return [object retainCount];
}
