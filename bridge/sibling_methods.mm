#include "bridge/sibling_methods.h"

#include "bridge/platform_class.h"

Class hostObjectCarrierClass() {
    return platformClass("ZQMREALobjectWrapper");
}
