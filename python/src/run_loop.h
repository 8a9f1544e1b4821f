// The main thread's run loop, where events come from. The interpreter's lock is held whenever anything of the
// host runs, handlers too, and let go only while nothing but time passes.

#pragma once

#include <optional>
#include <string>

namespace zqm::python {

// Makes the next callback that waits, if there is one, and answers whether there was. Throws what a handler
// threw and what a plugin raised.
bool deliver();

// Readable whenever deliver() has something to do; nothing where events can't be waited for by a descriptor.
std::optional<int> eventDescriptor();

// Returns when there may be something to deliver, after a signal, or when the time is over; 1 s at most, for
// a signal may come just before the wait. Throws what Python's handler of a signal throws.
void waitForEvents(double seconds);

// Where the platform's library is, and so the plugins that were built with it; nothing where it is the
// system's.
std::optional<std::string> platformFolder();

} // namespace zqm::python
