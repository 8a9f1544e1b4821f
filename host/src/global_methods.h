#pragma once

#include "declaration.h"

namespace zqm::host {

// The function of a global host-language method of that very signature; null when there is none.
void* findGlobalMethod(const Declaration& wanted);

} // namespace zqm::host
