// The plugin keeps what it resolved for the life of a process, so a test that looks at first uses needs a
// process of its own.

#pragma once

#include <functional>

namespace zqm::endtoend {

// Runs the test's body again in a new process of this program, where the plugin was never loaded; its
// failures are this test's. It must be the first statement of the test.
void inFreshProcess(const std::function<void()>& body);

} // namespace zqm::endtoend
