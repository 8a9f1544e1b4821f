// The reference host for benchmarks that call the plugin's functions without its entry function.

#pragma once

#include "plugin/entry_points.h"
#include "plugin/plugin_main.h"
#include "plugin/set_up.h"
#include "zqmhost/zqmhost.h"

namespace zqm::bench {

// Made at the first call.
inline host::Runtime& runtime() {
    static host::Runtime one;
    if (gResolver == nullptr) {
        gResolver = host::Runtime::resolver();
        rbversion_rbversion = host::kDefaultVersion;
        CocoaInit();
    }
    return one;
}

} // namespace zqm::bench
