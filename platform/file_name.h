// File names as people mean them: the same letters may be composed (form C) or decomposed (form D).

#pragma once

#include <string>

namespace zqm::platform {

// The path of an existing file or folder, component by component: the exact name, or else the composed one,
// or else the decomposed one, or else any with the same letters. Where there is none yet, the composed name,
// which is what Linux programs write.
std::string resolveFileName(const std::string& path);

} // namespace zqm::platform
