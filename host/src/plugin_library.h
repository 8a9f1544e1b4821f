#pragma once

#include "plugin/host_interface.h"

#include <optional>
#include <string>
#include <string_view>

namespace zqm::host {

using PluginMain = void (*)(REALresolver);

// Throws LoadError, with the reason, where no file of this path can be found.
void requireFile(const std::string& plugin);

// The entry function of a plugin library, which stays loaded for the life of the process. Throws LoadError.
PluginMain loadPluginMain(const std::string& plugin);

// The path of the library of that name in the plugin's folder, which ends as the plugin's does; nothing when
// there is none.
std::optional<std::string> libraryBeside(const std::string& plugin, std::string_view name);

} // namespace zqm::host
