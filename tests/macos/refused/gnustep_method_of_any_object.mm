// refused by: compiler
// message: instance method '-subclassResponsibility:' not found
#import <Foundation/Foundation.h>

void refuse(id object) {
    [object subclassResponsibility:@selector(init)];
}
