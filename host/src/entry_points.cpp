#include "entry_points.h"

#include "entry_point_types.h"
#include "offered_entry_points.h"
#include "text.h"
#include "zqmhost/errors.h"

#include <algorithm>

namespace zqm::host {

EntryPoints::EntryPoints() : states_(kEntryPointNames.size()) {
    for (const auto& group :
         {startUpEntryPoints(), stringEntryPoints(), textEntryPoints(), objectEntryPoints(),
          exceptionEntryPoints(), propertyEntryPoints(), variantEntryPoints(), arrayEntryPoints(),
          memoryBlockEntryPoints(), folderItemEntryPoints()}) {
        for (const Entry& entry : group) {
            known(entry.name).function = entry.function;
        }
    }
}

void* EntryPoints::look(std::string_view name) {
    asked_.emplace_back(name);
    const std::size_t place = placeOfEntryPoint(name);
    return place == states_.size() || refused_.contains(name) ? nullptr : states_[place].function;
}

void EntryPoints::refuse(std::string_view name) {
    known(name);
    refused_.emplace(name);
}

void EntryPoints::refuseAll() {
    refused_.insert(kEntryPointNames.begin(), kEntryPointNames.end());
}

void EntryPoints::allow(std::string_view name) {
    known(name);
    refused_.erase(std::string(name));
}

void EntryPoints::failCall(std::string_view name, std::size_t nth) {
    State& state = known(name);
    state.failing.insert(state.calls + nth);
}

void EntryPoints::failEveryCall(std::string_view name) {
    known(name).alwaysFails = true;
}

void EntryPoints::failNone() {
    for (State& state : states_) {
        state.failing.clear();
        state.alwaysFails = false;
    }
}

std::size_t EntryPoints::lookups(std::string_view name) const {
    return static_cast<std::size_t>(std::ranges::count(asked_, name));
}

std::size_t EntryPoints::calls(std::string_view name) const {
    return known(name).calls;
}

void EntryPoints::resetCounts() {
    asked_.clear();
    for (State& state : states_) {
        std::set<std::size_t> failing;
        for (const std::size_t call : state.failing) {
            failing.insert(call - state.calls);
        }
        state.failing = std::move(failing);
        state.calls = 0;
    }
}

EntryPoints::State& EntryPoints::known(std::string_view name) {
    const std::size_t place = placeOfEntryPoint(name);
    if (place == states_.size()) {
        throw CallError("no entry point is called " + inQuotes(name));
    }
    return states_[place];
}

const EntryPoints::State& EntryPoints::known(std::string_view name) const {
    return const_cast<EntryPoints*>(this)->known(name);
}

} // namespace zqm::host
