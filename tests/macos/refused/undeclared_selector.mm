// refused by: compiler
// message: undeclared selector 'speakNow:'
#import <Foundation/Foundation.h>

BOOL speaksNow(id object) {
    return [object respondsToSelector:@selector(speakNow:)];
}
