// The pairs of a CoreFoundation dictionary, kept as its callbacks say.

#pragma once

#include "CoreFoundation/CoreFoundation.h"

#include <unordered_map>
#include <vector>

namespace zqm::platform {

class PointerMap {
public:
    // Null: plain pointers, compared by address.
    PointerMap(const CFDictionaryKeyCallBacks* keyCallBacks,
               const CFDictionaryValueCallBacks* valueCallBacks);
    PointerMap(const PointerMap&) = delete;
    PointerMap& operator=(const PointerMap&) = delete;
    ~PointerMap();

    std::size_t size() const { return pairs_.size(); }
    const void* value(const void* key) const; // null: none
    void set(const void* key, const void* value);
    void remove(const void* key);
    std::vector<const void*> keys() const;

private:
    struct Hash {
        CFDictionaryHashCallBack callBack;
        std::size_t operator()(const void* key) const;
    };
    struct Equal {
        CFDictionaryEqualCallBack callBack;
        bool operator()(const void* left, const void* right) const;
    };
    using Pairs = std::unordered_map<const void*, const void*, Hash, Equal>;

    const void* retainKey(const void* key) const;
    void releaseKey(const void* key) const;
    const void* retainValue(const void* value) const;
    void releaseValue(const void* value) const;

    CFDictionaryKeyCallBacks keyCallBacks_;
    CFDictionaryValueCallBacks valueCallBacks_;
    Pairs pairs_;
};

} // namespace zqm::platform
