// refused by: declarations
// message: NSPlantedKey: the record has no such variable
#import <Foundation/Foundation.h>

extern "C" NSString* const NSPlantedKey;
