// The elements of host arrays, one after the other.

#pragma once

#include "plugin/entry_points.h"
#include "plugin/host_errors.h"
#include "plugin/plugin_main.h"

#include <type_traits>

// The elements themselves, contiguous, where the host shows them. Read anew for each element: the array may
// have been given other memory.
inline const void* directData(REALarray array) {
    if (rbversion_rbversion >= kHostVersion2016) {
        return nullptr;
    }
    return *reinterpret_cast<const void* const*>(reinterpret_cast<const char*>(array) +
                                                 kArrayDirectDataOffset);
}

inline auto& lockFor(REALstring) {
    return REALLockString;
}
inline auto& lockFor(REALobject) {
    return REALLockObject;
}
inline auto& lockFor(REALtext) {
    return REALLockText;
}

// Whether elements that were read without a call can be given the lock that a get function would give them.
template <typename Element>
bool canLock() {
    if constexpr (std::is_pointer_v<Element>) {
        return lockFor(Element{}).isAvailable();
    }
    return true;
}

// An element within the array's bounds, of which `getter` is the host's get function. A handle comes with one
// lock that is the caller's.
template <auto& getter>
auto elementAt(REALarray array, std::int64_t index) {
    using Element = decltype(getter(array, index));
    const auto* elements = static_cast<const Element*>(directData(array));
    if (elements == nullptr || !canLock<Element>()) {
        return getter(array, index);
    }
    Element element = elements[index];
    if constexpr (std::is_pointer_v<Element>) {
        if (element != nullptr) {
            lockFor(element)(element);
        }
    }
    return element;
}

// Gives `take` every element up to `upperBound`, which the array had, until it answers false. The bound is
// asked for again before each of them, but decides only whether the element is still there: for one that is
// gone an error is raised, and `take` is given a neutral one.
template <auto& getter, typename Take>
void takeElements(REALarray array, std::int64_t upperBound, Take&& take) {
    for (std::int64_t i = 0; i <= upperBound; ++i) {
        const std::int64_t boundNow = REALGetArrayUBound(array);
        decltype(getter(array, i)) element{};
        if (boundNow < i) {
            RaiseOutOfBoundsException(i, boundNow + 1, "index", "");
        } else {
            element = elementAt<getter>(array, i);
        }
        if (!take(element)) {
            break;
        }
    }
}
