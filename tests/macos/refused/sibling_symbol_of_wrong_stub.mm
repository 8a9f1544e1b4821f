// refused by: audit
// message: NSPlantedKey comes from Foundation, but the record does not know it
// library: ZQMFoundation
// link option: {folder}/stubs/Foundation.tbd
#import <Foundation/Foundation.h>

extern "C" NSString* const NSPlantedKey;

NSString* plantedKey() {
    return NSPlantedKey;
}
