#pragma once

#include "cli/validate/findings.h"

#include <zqmhost/class_description.h>

namespace zqm::cli {

// Names that host code can't write, or that it can't tell apart: those of a class's members of different
// kinds, and of one member's parameters. Of one kind the host tells itself.
void checkMemberNames(const host::ClassDescription& type, Findings& findings);

} // namespace zqm::cli
