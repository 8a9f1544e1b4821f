// The C types of all entry points, as types that can be named, and the functions that stand in front of their
// implementations.

#pragma once

#include "core.h"
#include "entry_points.h"
#include "plugin/host_interface.h"

#include <CoreServices/CoreServices.h>
#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zqm::host {

namespace entry {

// NOLINTBEGIN(bugprone-macro-parentheses): Parameters come with their parentheses
#define ENTRY_POINT(wrapper, name, Result, Parameters)                                                       \
    struct wrapper {                                                                                         \
        using Function = Result Parameters;                                                                  \
        static constexpr const char* kName = name;                                                           \
    };
#define ARRAY_ENTRY_POINT(wrapper, name, Result, Parameters)                                                 \
    struct wrapper {                                                                                         \
        using Function = auto(REALarray) -> Result(*) Parameters;                                            \
        static constexpr const char* kName = name;                                                           \
    };
// NOLINTEND(bugprone-macro-parentheses)
#include "plugin/entry_points.def"
#undef ENTRY_POINT
#undef ARRAY_ENTRY_POINT

// Asked for at the start, before any wrapper.
struct REALGetRBVersion {
    using Function = double();
    static constexpr const char* kName = "REALGetRBVersion";
};
struct RegisterPluginVersion {
    using Function = void(std::int32_t);
    static constexpr const char* kName = "RegisterPluginVersion";
};

} // namespace entry

// A name may stand here more than once.
inline constexpr std::array kEntryPointNames{
    entry::REALGetRBVersion::kName,
    entry::RegisterPluginVersion::kName,
#define ENTRY_POINT(wrapper, name, Result, Parameters) entry::wrapper::kName,
#define ARRAY_ENTRY_POINT(wrapper, name, Result, Parameters) entry::wrapper::kName,
#include "plugin/entry_points.def"
#undef ENTRY_POINT
#undef ARRAY_ENTRY_POINT
};

// The first place of the name in that table; behind its end when it isn't there.
constexpr std::size_t placeOfEntryPoint(std::string_view name) {
    return static_cast<std::size_t>(
        std::ranges::find(kEntryPointNames, name, [](const char* one) { return std::string_view(one); }) -
        kEntryPointNames.begin());
}

// A C function of the entry point's type: finds the active runtime, counts the call, lets it fail when asked
// to, and otherwise calls the implementation.
template <typename Entry, typename Signature>
struct EntryFunction;
template <typename Entry, typename Result, typename... Arguments>
struct EntryFunction<Entry, Result(Arguments...)> {
    using Implementation = Result (*)(Core&, Arguments...);

    template <Implementation implementation>
    static Result call(Arguments... arguments) {
        Core* core = Core::active();
        if (core == nullptr) {
            return Result(); // a plugin outlives the runtime that loaded it
        }
        if (!core->onItsThread()) {
            core->reports().add(Report::Kind::WrongThread, Entry::kName);
            return Result();
        }
        constexpr std::size_t kPlace = placeOfEntryPoint(Entry::kName);
        static_assert(kPlace < kEntryPointNames.size());
        if (!core->entryPoints().admit(kPlace)) {
            return Result();
        }
        return implementation(*core, arguments...);
    }
};

// A line of the offer; compiles only when the implementation has the entry point's type.
template <typename Entry,
          typename EntryFunction<Entry, typename Entry::Function>::Implementation implementation>
EntryPoints::Entry offer() {
    auto* function = &EntryFunction<Entry, typename Entry::Function>::template call<implementation>;
    return {Entry::kName, std::bit_cast<void*>(function)};
}

} // namespace zqm::host
