#pragma once

namespace zqm::cli {

// What the process ends with.
inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongUsage = 2;
inline constexpr int kFruitless = 3;   // the command did its work, but what was hoped for is not so
inline constexpr int kSignalled = 128; // and the number of the signal that ended it

} // namespace zqm::cli
