// How deeply a value may hold others. A host Dictionary or a Cocoa array can hold itself, and no conversion
// of that would ever end.

#pragma once

#include "plugin/host_errors.h"

#include <type_traits>

inline constexpr int kDeepestNesting = 500; // collections within collections

// One level of the conversion under way. Levels count on through the host, whose methods may call the plugin
// while it converts; so nothing is thrown over them.
class NestingLevel {
public:
    NestingLevel() { ++depth_; }
    NestingLevel(const NestingLevel&) = delete;
    NestingLevel& operator=(const NestingLevel&) = delete;
    ~NestingLevel() {
        if (--depth_ == 0) {
            isAbandoned_ = false;
        }
    }

    // Beyond the deepest level the conversion is abandoned, which is raised into the host once.
    void abandonIfTooDeep() const {
        if (depth_ > kDeepestNesting && !isAbandoned_) {
            isAbandoned_ = true;
            RaiseException("RuntimeException", "A value holds others nested deeper than 500 levels.", 0, 0);
        }
    }

    // Until the outermost level has ended.
    static bool isAbandoned() { return isAbandoned_; }

private:
    static inline int depth_ = 0;
    static inline bool isAbandoned_ = false;
};

// Whether an element held others too deeply, so that it is not to be stored and none is to follow. To be
// asked after each.
inline bool isConversionAbandoned() {
    return NestingLevel::isAbandoned();
}

// Converts the elements of one collection. The result is an owner or autoreleased; it is null once the
// conversion is abandoned.
template <typename Body>
std::invoke_result_t<Body> convertedCollection(Body&& body) {
    const NestingLevel level;
    level.abandonIfTooDeep();
    if (isConversionAbandoned()) {
        return {};
    }
    auto result = body();
    if (isConversionAbandoned()) {
        return {};
    }
    return result;
}
