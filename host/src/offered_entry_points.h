// What this host offers, by theme. What stands in none of these groups is answered with null.

#pragma once

#include "entry_points.h"

#include <vector>

namespace zqm::host {

std::vector<EntryPoints::Entry> startUpEntryPoints();
std::vector<EntryPoints::Entry> stringEntryPoints();
std::vector<EntryPoints::Entry> objectEntryPoints();
std::vector<EntryPoints::Entry> exceptionEntryPoints();
std::vector<EntryPoints::Entry> propertyEntryPoints();

} // namespace zqm::host
