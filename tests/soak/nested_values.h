// Random values of a host program, arrays and dictionaries in each other.

#pragma once

#include "zqmhost/zqmhost.h"

#include <random>

namespace zqm::soak {

// Of every kind that has a counterpart in Cocoa, at most so deep.
host::Value nestedValue(host::Runtime& runtime, std::mt19937_64& random, int depth);

} // namespace zqm::soak
