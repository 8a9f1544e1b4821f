// Files without a name, which leave nothing behind whatever becomes of their writers, where the system has
// them.

#pragma once

#include <string>

namespace zqm::cli {

// A new, empty one in the folder of this descriptor, for reading and writing. -1 with errno where there are
// none.
int openUnnamedFile(int folder);

// Names it in that folder, where nothing has that name. False with errno when that fails.
bool nameFile(int file, int folder, const std::string& name);

} // namespace zqm::cli
