#include "core.h"
#include "zqmhost/text.h"

#include <utility>

namespace zqm::host {

namespace {

constexpr const char* kWhere = "Text";

} // namespace

Text::Text(std::shared_ptr<Core> core, REALtext locked) noexcept : core_(std::move(core)), handle_(locked) {}

Text::Text(const Text& other) : core_(other.core_), handle_(other.handle_) {
    if (handle_ != nullptr && core_->isOpen()) {
        core_->lock(handle_, kWhere);
    }
}

Text::Text(Text&& other) noexcept
    : core_(std::move(other.core_)), handle_(std::exchange(other.handle_, nullptr)) {}

Text& Text::operator=(Text other) noexcept {
    std::swap(core_, other.core_);
    std::swap(handle_, other.handle_);
    return *this;
}

Text::~Text() {
    if (handle_ != nullptr && core_->isOpen()) {
        core_->unlock(handle_, kWhere);
    }
}

REALtext Text::release() noexcept {
    return std::exchange(handle_, nullptr);
}

std::string Text::text() const {
    if (handle_ == nullptr) {
        return {};
    }
    core_->requireOpen();
    const auto* handle = core_->handles().known<TextHandle>(handle_);
    if (handle == nullptr) {
        throw CallError("this text is gone");
    }
    return handle->utf8;
}

} // namespace zqm::host
