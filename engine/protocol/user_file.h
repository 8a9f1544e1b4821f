// A file by whose locks the programs of one user agree on who speaks and who is heard.

#pragma once

#include "engine/protocol/descriptor.h"

namespace zqm::protocol {

enum class IfAbsent : bool { Leave, Create };

// The file of this name in the user's own folder; nothing where there is no folder that only this user can
// put something into.
Descriptor openUserFile(const char* name, IfAbsent ifAbsent);

} // namespace zqm::protocol
