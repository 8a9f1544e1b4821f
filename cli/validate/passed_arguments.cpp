#include "cli/validate/passed_arguments.h"

#include <cstddef>

namespace zqm::cli {

PassedArguments::PassedArguments(const host::MethodDescription& method,
                                 const std::vector<host::Value>& chosen) {
    for (std::size_t index = 0; index < chosen.size(); ++index) {
        if (method.parameters[index].byRef) {
            values_.emplace_back(host::ByRef{&slots_.emplace_back(chosen[index])});
        } else {
            values_.push_back(chosen[index]);
        }
    }
}

} // namespace zqm::cli
