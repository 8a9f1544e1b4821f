#include "fuzz/quiet_log.h"

#import <Foundation/Foundation.h>

namespace zqm::fuzz {

void quietLog() {
    _NSLog_printf_handler = [](NSString*) {};
    // What Foundation sets up for the first line of a log, and keeps, isn't a leak of what comes after.
    NSLog(@"Nobody reads this.");
}

} // namespace zqm::fuzz
