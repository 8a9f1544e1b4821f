// refused by: compiler
// message: cannot initialize a variable of type 'unsigned char *' with an lvalue of type 'BOOL *'
#import <Foundation/Foundation.h>

unsigned char first(BOOL* flags) {
    unsigned char* bytes = flags;
    return *bytes;
}
