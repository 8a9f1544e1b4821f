// refused by: audit
// message: PlantedObject lacks -copyWithZone:, which NSCopying requires
#import <objc/objc.h>

@protocol NSCopying
@optional
- (id)copyWithZone:(void*)zone;
@end

__attribute__((objc_root_class))
@interface PlantedObject<NSCopying> {
    Class isa;
}
@end

@implementation PlantedObject
@end
