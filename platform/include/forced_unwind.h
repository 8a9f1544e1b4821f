// The exception with which this C++ runtime ends a thread. `catch (...)` sees it and must let it go on.

#pragma once

#include <cxxabi.h>

using ForcedUnwind = abi::__forced_unwind;
