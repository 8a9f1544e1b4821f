// What an FSRef holds: which of the paths that this process has ever referred to is meant. The paths are kept
// for the life of the process, since nobody tells when the last copy of a reference is gone.

#pragma once

#include "CoreServices/CoreServices.h"

#include <optional>
#include <string>

namespace zqm::platform {

// The same path gives the same bytes.
FSRef makeReference(const std::string& path);

// Nothing for bytes that this process has made no reference of.
std::optional<std::string> pathOfReference(const FSRef& reference);

} // namespace zqm::platform
