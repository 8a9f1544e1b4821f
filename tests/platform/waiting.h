// How tests wait for what comes from the run loop.

#pragma once

#include <functional>

namespace zqm::platform::test {

// Runs the run loop until the condition holds; false: it did not within minutes.
bool runUntil(const std::function<bool()>& condition);

// Runs the run loop until nothing more is delivered for a while.
void runOut();

// Waits, without a run loop.
bool waitUntil(const std::function<bool()>& condition);

} // namespace zqm::platform::test
