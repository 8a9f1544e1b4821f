// Owners of one lock on a host handle, so that a lock is given back however a function is left.

#pragma once

#include "plugin/entry_points.h"

#include <utility>

template <typename Handle, auto& unlock>
class OwnedHandle {
public:
    OwnedHandle() = default;
    explicit OwnedHandle(Handle handle) : handle_(handle) {}
    OwnedHandle(const OwnedHandle&) = delete;
    OwnedHandle& operator=(const OwnedHandle&) = delete;
    OwnedHandle(OwnedHandle&& other) noexcept : handle_(other.release()) {}
    OwnedHandle& operator=(OwnedHandle&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~OwnedHandle() {
        if (handle_ != nullptr) {
            unlock(handle_);
        }
    }

    explicit operator bool() const { return handle_ != nullptr; }
    Handle get() const { return handle_; }

    // The lock passes to the caller.
    Handle release() { return std::exchange(handle_, nullptr); }

private:
    Handle handle_ = nullptr;
};

using OwnedString = OwnedHandle<REALstring, REALUnlockString>;
using OwnedObject = OwnedHandle<REALobject, REALUnlockObject>;
using OwnedText = OwnedHandle<REALtext, REALUnlockText>;

// One more lock on a borrowed handle. Where the host can't lock there is nothing to unlock: an empty owner.
inline OwnedString locked(REALstring string) {
    if (!REALLockString.isAvailable()) {
        return {};
    }
    REALLockString(string);
    return OwnedString{string};
}

inline OwnedObject locked(REALobject object) {
    if (!REALLockObject.isAvailable()) {
        return {};
    }
    REALLockObject(object);
    return OwnedObject{object};
}
