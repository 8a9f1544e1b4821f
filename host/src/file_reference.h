// Between paths and the platform's references to files.

#pragma once

#include <CoreServices/CoreServices.h>
#include <optional>
#include <string>
#include <string_view>

namespace zqm::host {

// Nothing when no item has that path.
std::optional<FSRef> referenceTo(const std::string& path);

// Nothing when the item is gone or nothing is referred to.
std::optional<std::string> pathOf(const FSRef& reference);

// Nothing when it has no room, or is no UTF-8.
std::optional<HFSUniStr255> fileNameOf(std::string_view name);

// In UTF-8; nothing when it is no Unicode text or no name of one item.
std::optional<std::string> textOf(const HFSUniStr255& name);

} // namespace zqm::host
