#pragma once

#include "plugin/host_interface.h"

#include <filesystem>

namespace zqm::host {

using PluginMain = void (*)(REALresolver);

// The entry function of a plugin library, which stays loaded for the life of the process. Throws LoadError.
PluginMain loadPluginMain(const std::filesystem::path& plugin);

} // namespace zqm::host
