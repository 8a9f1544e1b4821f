// What a process can't get any more, whatever the kernel has to confine it.

#pragma once

namespace zqm::engine {

// From now on this process, and what it starts, gets no rights by starting a program. Throws
// std::system_error when the kernel can't do that.
void refuseNewPrivileges();

} // namespace zqm::engine
