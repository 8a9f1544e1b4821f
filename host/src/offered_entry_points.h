// What this host offers, by theme.

#pragma once

#include "entry_points.h"

#include <vector>

namespace zqm::host {

std::vector<EntryPoints::Entry> startUpEntryPoints();
std::vector<EntryPoints::Entry> stringEntryPoints();
std::vector<EntryPoints::Entry> textEntryPoints();
std::vector<EntryPoints::Entry> objectEntryPoints();
std::vector<EntryPoints::Entry> exceptionEntryPoints();
std::vector<EntryPoints::Entry> propertyEntryPoints();
std::vector<EntryPoints::Entry> variantEntryPoints();
std::vector<EntryPoints::Entry> arrayEntryPoints();
std::vector<EntryPoints::Entry> memoryBlockEntryPoints();
std::vector<EntryPoints::Entry> folderItemEntryPoints();

} // namespace zqm::host
