// The host classes of this library, in the order in which they are registered. The frame only registers
// them; the sources of the classes define the list.

#pragma once

#include "plugin/host_interface.h"

#include <array>

extern const std::array<ClassRecord*, 3> kClassRecords;
