// refused by: compiler
// message: 'NSPlantedKey' is only available on macOS 10.14 or newer
#import <Foundation/Foundation.h>

extern "C" NSString* const NSPlantedKey MACOS_AVAILABLE(introduced = 10.14);

NSString* plantedKey() {
    return NSPlantedKey;
}
