// The host's services as callables, one for each row of entry_points.def. Each asks the host's resolver
// for its function on first use and keeps it. A name that the host doesn't know makes the call a no-op
// with a neutral result (null, 0, false), and the host is asked again at the next call.

#pragma once

#include "plugin/host_interface.h"

#include <CoreFoundation/CoreFoundation.h>
#include <CoreServices/CoreServices.h>

// The host's resolver, set once by REALPluginMain; null before.
extern REALresolver gResolver;

// Remembers what the resolver answers to one name, if it answers.
class EntryPointSlot {
public:
    explicit constexpr EntryPointSlot(const char* name) : name_(name) {}

    void* function() {
        if (function_ == nullptr) [[unlikely]] {
            function_ = gResolver != nullptr ? gResolver(name_) : nullptr;
        }
        return function_;
    }

private:
    const char* name_;
    void* function_ = nullptr;
};

template <typename Signature>
class EntryPoint;

template <typename Result, typename... Parameters>
class EntryPoint<Result(Parameters...)> {
public:
    explicit constexpr EntryPoint(const char* name) : slot_(name) {}

    Result operator()(Parameters... parameters) {
        if (void* function = slot_.function()) [[likely]] {
            return reinterpret_cast<Result (*)(Parameters...)>(function)(parameters...);
        }
        return Result();
    }

    // Whether a call would reach the host.
    bool isAvailable() { return slot_.function() != nullptr; }

private:
    EntryPointSlot slot_;
};

template <typename Signature>
class ArrayEntryPoint;

// The resolved function answers, for an array, the function that does the work on it.
template <typename Result, typename... Parameters>
class ArrayEntryPoint<Result(REALarray, Parameters...)> {
public:
    explicit constexpr ArrayEntryPoint(const char* name) : slot_(name) {}

    Result operator()(REALarray array, Parameters... parameters) {
        using Work = Result (*)(REALarray, Parameters...);
        if (void* function = slot_.function()) {
            if (Work work = reinterpret_cast<Work (*)(REALarray)>(function)(array)) {
                return work(array, parameters...);
            }
        }
        return Result();
    }

    // Whether the host knows the name.
    bool isAvailable() { return slot_.function() != nullptr; }

private:
    EntryPointSlot slot_;
};

#define ENTRY_POINT(wrapper, name, Result, Parameters)                                                       \
    inline constinit EntryPoint<Result Parameters> wrapper{name};
#define ARRAY_ENTRY_POINT(wrapper, name, Result, Parameters)                                                 \
    inline constinit ArrayEntryPoint<Result Parameters> wrapper{name};
#include "plugin/entry_points.def"
#undef ENTRY_POINT
#undef ARRAY_ENTRY_POINT
