// The entry points as a plugin sees them: by name from the resolver.

#pragma once

#include "zqmhost/runtime.h"

namespace zqm::host::test {

template <typename Result, typename... Arguments>
Result call(const char* name, Arguments... arguments) {
    auto* function = reinterpret_cast<Result (*)(Arguments...)>(Runtime::resolver()(name));
    return function == nullptr ? Result() : function(arguments...);
}

} // namespace zqm::host::test
