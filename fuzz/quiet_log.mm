#include "fuzz/quiet_log.h"

#import <Foundation/Foundation.h>

namespace zqm::fuzz {

void quietLog() {
    _NSLog_printf_handler = [](NSString*) {};
}

} // namespace zqm::fuzz
