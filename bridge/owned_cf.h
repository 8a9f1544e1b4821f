// The owner of one reference to a CoreFoundation object.

#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <utility>

template <typename Reference>
class OwnedCF {
public:
    OwnedCF() = default;
    explicit OwnedCF(Reference reference) : reference_(reference) {}
    OwnedCF(const OwnedCF&) = delete;
    OwnedCF& operator=(const OwnedCF&) = delete;
    OwnedCF(OwnedCF&& other) noexcept : reference_(other.release()) {}
    OwnedCF& operator=(OwnedCF&&) = delete;
    ~OwnedCF() {
        if (reference_ != nullptr) {
            CFRelease(reference_);
        }
    }

    Reference get() const { return reference_; }

    // The reference passes to the caller.
    Reference release() { return std::exchange(reference_, nullptr); }

private:
    Reference reference_ = nullptr;
};
