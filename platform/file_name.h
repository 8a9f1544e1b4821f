// File names as people mean them: the same letters may be composed (form C) or decomposed (form D).

#pragma once

#include <string>

namespace zqm::platform {

// The path of an existing file or folder whose components are these exactly or in either form, component by
// component; where there is none yet, the composed form, which is what Linux programs write.
std::string resolveFileName(const std::string& path);

} // namespace zqm::platform
