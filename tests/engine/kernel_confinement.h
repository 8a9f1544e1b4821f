// What the kernel has to confine a process with, asked without the code that the tests are about: where that
// finds less than there is, a test fails and isn't skipped.

#pragma once

namespace zqm::test {

// Whether a process like this one may filter its system calls: one tries it.
bool kernelFiltersSystemCalls();

// The version of Landlock; 0 where the kernel has none or keeps it from this process. Throws
// std::system_error when that can't be told.
int kernelLandlockVersion();

} // namespace zqm::test
