// refused by: compiler
// message: cannot initialize a variable of type 'CFStringRef'
#import <Foundation/Foundation.h>

CFIndex lengthOf(NSString* string) {
    CFStringRef plain = string;
    return CFStringGetLength(plain);
}
