// refused by: sources
// message: exception_block.mm:7: @try stands in a .mm
// message: exception_block.mm:9: @catch stands in a .mm
#import <Foundation/Foundation.h>

void attempt(id object) {
    @try {
        [object description];
    } @catch (NSException* exception) {
    }
}
