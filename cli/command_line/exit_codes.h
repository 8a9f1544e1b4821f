#pragma once

namespace zqm::cli {

// What the process ends with.
inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongUsage = 2;
inline constexpr int kFruitless = 3;   // nothing failed, but what was waited for did not come
inline constexpr int kSignalled = 128; // and the number of the signal that ended it

} // namespace zqm::cli
