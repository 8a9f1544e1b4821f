#include "platform/pointer_map.h"

#include <functional>

namespace zqm::platform {

PointerMap::PointerMap(const CFDictionaryKeyCallBacks* keyCallBacks,
                       const CFDictionaryValueCallBacks* valueCallBacks)
    : keyCallBacks_(keyCallBacks != nullptr ? *keyCallBacks : CFDictionaryKeyCallBacks{}),
      valueCallBacks_(valueCallBacks != nullptr ? *valueCallBacks : CFDictionaryValueCallBacks{}),
      pairs_(0, Hash{keyCallBacks_.hash}, Equal{keyCallBacks_.equal}) {}

PointerMap::~PointerMap() {
    for (const auto& [key, value] : pairs_) {
        releaseKey(key);
        releaseValue(value);
    }
}

const void* PointerMap::value(const void* key) const {
    const auto found = pairs_.find(key);
    return found != pairs_.end() ? found->second : nullptr;
}

void PointerMap::set(const void* key, const void* value) {
    const void* const kept = retainValue(value);
    if (const auto found = pairs_.find(key); found != pairs_.end()) {
        const void* const old = found->second;
        found->second = kept;
        releaseValue(old); // last: it may come back here
    } else {
        pairs_.emplace(retainKey(key), kept);
    }
}

void PointerMap::remove(const void* key) {
    const auto found = pairs_.find(key);
    if (found == pairs_.end()) {
        return;
    }
    const auto [oldKey, oldValue] = *found;
    pairs_.erase(found);
    releaseKey(oldKey);
    releaseValue(oldValue);
}

std::vector<const void*> PointerMap::keys() const {
    std::vector<const void*> result;
    result.reserve(pairs_.size());
    for (const auto& [key, value] : pairs_) {
        result.push_back(key);
    }
    return result;
}

std::size_t PointerMap::Hash::operator()(const void* key) const {
    return callBack != nullptr ? callBack(key) : std::hash<const void*>{}(key);
}

bool PointerMap::Equal::operator()(const void* left, const void* right) const {
    return left == right || (callBack != nullptr && callBack(left, right) != 0);
}

const void* PointerMap::retainKey(const void* key) const {
    return keyCallBacks_.retain != nullptr ? keyCallBacks_.retain(kCFAllocatorDefault, key) : key;
}

void PointerMap::releaseKey(const void* key) const {
    if (keyCallBacks_.release != nullptr) {
        keyCallBacks_.release(kCFAllocatorDefault, key);
    }
}

const void* PointerMap::retainValue(const void* value) const {
    return valueCallBacks_.retain != nullptr ? valueCallBacks_.retain(kCFAllocatorDefault, value) : value;
}

void PointerMap::releaseValue(const void* value) const {
    if (valueCallBacks_.release != nullptr) {
        valueCallBacks_.release(kCFAllocatorDefault, value);
    }
}

} // namespace zqm::platform
