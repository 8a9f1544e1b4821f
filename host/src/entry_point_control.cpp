#include "zqmhost/entry_point_control.h"

#include "core.h"
#include "entry_point_types.h"

#include <set>

namespace zqm::host {

std::vector<std::string> EntryPointControl::names() {
    const std::set<std::string> names(kEntryPointNames.begin(), kEntryPointNames.end());
    return {names.begin(), names.end()};
}

void EntryPointControl::refuse(std::string_view name) {
    core_->entryPoints().refuse(name);
}
void EntryPointControl::refuseAll() {
    core_->entryPoints().refuseAll();
}
void EntryPointControl::allow(std::string_view name) {
    core_->entryPoints().allow(name);
}
void EntryPointControl::allowAll() {
    core_->entryPoints().allowAll();
}
void EntryPointControl::failCall(std::string_view name, std::size_t nth) {
    core_->entryPoints().failCall(name, nth);
}
void EntryPointControl::failEveryCall(std::string_view name) {
    core_->entryPoints().failEveryCall(name);
}
void EntryPointControl::failNone() {
    core_->entryPoints().failNone();
}
std::size_t EntryPointControl::lookups(std::string_view name) const {
    return core_->entryPoints().lookups(name);
}
std::size_t EntryPointControl::calls(std::string_view name) const {
    return core_->entryPoints().calls(name);
}
const std::vector<std::string>& EntryPointControl::asked() const {
    return core_->entryPoints().asked();
}
void EntryPointControl::resetCounts() {
    core_->entryPoints().resetCounts();
}

} // namespace zqm::host
