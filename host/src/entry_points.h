// What the resolver answers, the count of it, and the faults that were asked for.

#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::host {

class EntryPoints {
public:
    // One line of the offer: a name of the interface and the C function behind it.
    struct Entry {
        const char* name;
        void* function;
    };

    EntryPoints();

    // Counted; null for what is refused or not known.
    void* look(std::string_view name);
    // Counts a call of the entry point with that place in the table of names; false when it is to fail.
    bool admit(std::size_t place) {
        State& state = states_[place];
        ++state.calls;
        return !state.alwaysFails && (state.failing.empty() || state.failing.erase(state.calls) == 0);
    }

    // Throws CallError when the interface knows no such name.
    void refuse(std::string_view name);
    void refuseAll();
    void allow(std::string_view name);
    void allowAll() { refused_.clear(); }
    void failCall(std::string_view name, std::size_t nth);
    void failEveryCall(std::string_view name);
    void failNone();

    std::size_t lookups(std::string_view name) const;
    std::size_t calls(std::string_view name) const;
    const std::vector<std::string>& asked() const { return asked_; }
    void resetCounts();

private:
    struct State {
        void* function = nullptr;
        std::size_t calls = 0;
        std::set<std::size_t> failing; // counted like calls
        bool alwaysFails = false;
    };

    State& known(std::string_view name);
    const State& known(std::string_view name) const;

    std::vector<State> states_; // by place in the table of names
    std::set<std::string, std::less<>> refused_;
    std::vector<std::string> asked_;
};

} // namespace zqm::host
