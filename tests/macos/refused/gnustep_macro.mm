// refused by: compiler
// message: use of undeclared identifier 'ASSIGN'
#import <Foundation/Foundation.h>

void replace(id first, id second) {
    ASSIGN(first, second);
}
