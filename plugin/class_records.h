// What this library registers with the host. The frame only does the registering; the sources of the classes
// say what there is.

#pragma once

#include "plugin/host_interface.h"

#include <span>

// The host classes, in the order in which they are registered.
std::span<ClassRecord* const> classRecords();

// What the host shows as the library's part of its family.
extern const char* const kPartName;
