// Describes what the host knows in the plain values of its C++ API.

#pragma once

#include "host_class.h"
#include "zqmhost/class_description.h"

namespace zqm::host {

TypeDescription descriptionOf(const Type& type);
MethodDescription descriptionOf(const Declaration& declaration);
// Of a class that a plugin registered.
ClassDescription descriptionOf(const HostClass& type);

} // namespace zqm::host
