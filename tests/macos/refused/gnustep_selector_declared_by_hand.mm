// refused by: audit
// message: the library sends subclassResponsibility:, which the record does not know
#import <Foundation/Foundation.h>

@interface NSObject (Planted)
- (id)subclassResponsibility:(SEL)selector;
@end

void refuse(NSObject* object) {
    [object subclassResponsibility:@selector(init)];
}
