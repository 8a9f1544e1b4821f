#pragma once

#include "cli/validate/checks/plugin_file.h"

#include <functional>

namespace zqm::cli {

// Whether the host is to get the class record at that address.
using RecordObserver = std::function<bool(void* record)>;

// Calls the plugin's entry function, and the observer for each record before the host reads it.
void startObserved(host::Runtime& runtime, PluginMain entryFunction, const RecordObserver& observer);

} // namespace zqm::cli
