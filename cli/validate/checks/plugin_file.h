// The file of a plugin, as the dynamic linker has it.

#pragma once

#include <zqmhost/zqmhost.h>

#include <string>

namespace zqm::cli {

using PluginMain = void (*)(REALresolver);

inline constexpr const char* kEntryFunction = "REALPluginMain";

// Loads it, for the life of the process, with all symbols that it needs. Throws Failure.
void* openPlugin(const std::string& library);

// Throws Failure where there is none.
PluginMain entryFunctionOf(void* library);

} // namespace zqm::cli
