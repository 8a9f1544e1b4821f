#pragma once

namespace zqm::engine {

// From now on this process ends by SIGALRM some seconds after the program at the other end of the socket of
// its conversation has ended or hung up, unless it has ended by itself before. It may be at work for minutes
// before it looks at the socket, and nobody is left then who would end it.
void endAfterHost();

} // namespace zqm::engine
