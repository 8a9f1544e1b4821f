#pragma once

#include "plugin/host_interface.h"

#include <memory>
#include <string>

namespace zqm::host {

class Core;

// A host text, holding one lock of it: immutable Unicode. A default one is nil, which counts as the empty
// text. Copying locks, destruction unlocks.
class Text {
public:
    Text() = default;
    Text(std::shared_ptr<Core> core, REALtext locked) noexcept; // takes over the caller's lock
    // Another lock on the same one, or the lock of the other.
    Text(const Text& other);
    Text(Text&& other) noexcept;
    Text& operator=(Text other) noexcept;
    ~Text();

    // Whether this is nil.
    bool isNull() const { return handle_ == nullptr; }
    REALtext handle() const { return handle_; } // borrowed
    REALtext release() noexcept;                // hands the lock to the caller; nil afterwards

    std::string text() const; // UTF-8

private:
    std::shared_ptr<Core> core_;
    REALtext handle_ = nullptr;
};

} // namespace zqm::host
