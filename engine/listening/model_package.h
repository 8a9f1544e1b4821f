// Where the speech model comes from, for who lacks it.

#pragma once

namespace zqm::engine {

inline constexpr const char* kModelPackage = "pocketsphinx-en-us";

} // namespace zqm::engine
