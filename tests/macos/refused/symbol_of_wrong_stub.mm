// refused by: audit
// message: NSPlantedKey comes from Foundation, but the record does not know it
// link option: {folder}/stubs/Foundation.tbd
#import <Foundation/Foundation.h>

extern "C" NSString* const NSPlantedKey;

NSString* plantedKey() {
    return NSPlantedKey;
}
