// refused by: linker
// message: undefined symbol: NewNSErrorZQM
// library: ZQMFoundation
#include "bridge/errors.h"

REALobject hostError() {
    return NewNSErrorZQM(nullptr);
}
