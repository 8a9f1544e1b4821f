// Foundation's run loops, or none: a thread that uses its own for the first time needs descriptors for it.
// Where there are none, Foundation raises, and keeps a lock that any other thread may come to need.

#pragma once

#import <Foundation/Foundation.h>

namespace zqm::platform {

// That of the calling thread. Nil: it has none yet, and no descriptors for one.
NSRunLoop* currentRunLoop();

// The same of the main thread.
NSRunLoop* mainRunLoop();

} // namespace zqm::platform
