// refused by: compiler
// message: use of undeclared identifier 'objc_get_class'
#import <Foundation/Foundation.h>
#include <objc/runtime.h>

Class stringClass() {
    return objc_get_class("NSString");
}
