#pragma once

#include "declaration.h"

#include <string_view>

namespace zqm::host {

// The function of a global host-language method of that very signature; null when there is none.
void* findGlobalMethod(const Declaration& wanted);

// Throws CallError when there is no global method of that name, in any host.
void requireGlobalMethod(std::string_view name);

} // namespace zqm::host
