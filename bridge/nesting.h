// How deeply a value may hold others. A host Dictionary or a Cocoa array can hold itself, and no conversion
// of that would ever end.

#pragma once

#include "plugin/host_errors.h"

#include <type_traits>

inline constexpr int kDeepestNesting = 500; // collections within collections

// Leaves the conversions of all levels.
struct NestedTooDeeply {};

class NestingLevel {
public:
    NestingLevel() { ++depth_; }
    NestingLevel(const NestingLevel&) = delete;
    NestingLevel& operator=(const NestingLevel&) = delete;
    ~NestingLevel() { --depth_; }

    static bool isOutermost() { return depth_ == 1; }
    static bool isTooDeep() { return depth_ > kDeepestNesting; }

private:
    static inline int depth_ = 0;
};

// Converts the elements of one collection. Beyond the deepest level the whole conversion is abandoned: the
// outermost collection raises one exception into the host and answers null.
template <typename Body>
std::invoke_result_t<Body> convertedCollection(Body&& body) {
    const NestingLevel level;
    if (NestingLevel::isTooDeep()) {
        throw NestedTooDeeply{};
    }
    if (!NestingLevel::isOutermost()) {
        return body();
    }
    try {
        return body();
    } catch (const NestedTooDeeply&) {
        RaiseException("RuntimeException", "A value holds others nested deeper than 500 levels.", 0, 0);
    }
    return nullptr;
}
