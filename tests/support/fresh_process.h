// The plugin keeps what it resolved for the life of a process, so a test that looks at first uses, or changes
// what is kept, needs a process of its own. A mere fork is none: Apple's frameworks don't work in one.

#pragma once

#include <functional>

namespace zqm::support {

// Runs the test again in a new process of this program, there up to the end of the body; the failures of that
// are this test's. What stands before it in the test, and a fixture's set-up, runs in that process too.
void inFreshProcess(const std::function<void()>& body);

// The same in a fork of this process, where that works: much sooner, for programs in which nothing is kept
// but by such bodies.
void inFork(const std::function<void()>& body);

} // namespace zqm::support
