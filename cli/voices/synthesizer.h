#pragma once

#include <zqmhost/object.h>

#include <optional>
#include <string>

namespace zqm::host {
class Runtime;
}

namespace zqm::cli {

// With the voice of this identifier or name, or the default one. Throws Failure when there is none.
host::Object makeSynthesizer(host::Runtime& runtime, const std::optional<std::string>& voice);

} // namespace zqm::cli
