#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::host {

class Core;

// Control over what the plugin gets from the resolver, and the count of it. Names are those given to the
// resolver; one that the interface doesn't know throws CallError, except in lookups(), where it may have been
// asked for.
class EntryPointControl {
public:
    // Of the runtime, which makes it: Runtime::entryPoints().
    explicit EntryPointControl(Core& core) : core_(&core) {}

    // All that the interface knows, each once.
    static std::vector<std::string> names();

    // From now on the resolver answers null for the name. A plugin that already holds the function keeps it.
    void refuse(std::string_view name);
    void refuseAll();
    void allow(std::string_view name);
    void allowAll();

    // The nth call from now on (1: the next) is not carried out and answers neutrally.
    void failCall(std::string_view name, std::size_t nth);
    void failEveryCall(std::string_view name);
    void failNone(); // takes both back, for all names

    std::size_t lookups(std::string_view name) const; // how often the resolver was asked for it
    std::size_t calls(std::string_view name) const;   // failed ones included
    // Every name that the resolver was asked for, once for each time, in order.
    const std::vector<std::string>& asked() const;
    void resetCounts();

private:
    Core* core_;
};

} // namespace zqm::host
