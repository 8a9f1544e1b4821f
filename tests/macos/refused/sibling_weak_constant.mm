// refused by: rules
// message: these are imported weakly, but must be there: _NSVoiceName
// library: ZQMFoundation
#include "speech/platform_constants.h"

NSString* voiceName() {
    return platformConstant(&NSVoiceName);
}
