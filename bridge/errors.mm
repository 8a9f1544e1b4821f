#include "bridge/errors.h"

#include "bridge/wrapper_objects.h"

#import <Foundation/Foundation.h>

REALobject NewNSErrorZQM(NSError* error) {
    return error != nil ? sharedWrapper(error, "NSErrorZQM") : nullptr;
}
