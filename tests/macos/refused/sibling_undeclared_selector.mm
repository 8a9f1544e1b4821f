// refused by: compiler
// message: undeclared selector 'speakNow:'
// library: ZQMFoundation
#import <Foundation/Foundation.h>

BOOL speaksNow(id object) {
    return [object respondsToSelector:@selector(speakNow:)];
}
