// What this process holds of the system, for leak checks that compare N rounds with 2N.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <sys/types.h>

namespace zqm::support {

// All of the machine, in no order.
std::vector<pid_t> allProcesses();

// 0 of one that is gone.
pid_t parentOf(pid_t process);

// Direct children of a process, those included that ended and wait to be reaped; ascending.
std::vector<pid_t> childrenOf(pid_t process);
std::vector<pid_t> childrenOfThisProcess();

// Those of this process's children that run a program of that file name.
std::vector<pid_t> childrenThatRun(const std::string& program);

// How it is, as proc(5) has it: 'R' runs, 'S' sleeps, 'T' is stopped, 'Z' waits to be reaped; '\0' is gone.
// Of a thread, too.
char stateOf(pid_t process);

// False for one that is gone, and also for one that ended and waits to be reaped.
bool isAlive(pid_t process);

// Stops one with SIGSTOP, and returns when it stands still; throws std::runtime_error when it doesn't.
void halt(pid_t process);

// Descriptors open in this process, or in another one that we may look into.
std::size_t openDescriptors();
std::size_t openDescriptorsOf(pid_t process);

// Seconds that processors have spent on a process so far, its ended children not counted; 0 for one that is
// gone. Counted in ticks of a hundredth.
double processorSecondsOf(pid_t process);

// Bytes of this process's memory that are resident, shared pages included. Freed memory is given back to
// the system first, so that what counts is what is held.
std::size_t residentMemory();

} // namespace zqm::support
