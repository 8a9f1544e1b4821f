#include "zqmhost/string.h"

#include "core.h"
#include "text_conversion.h"

#include <utility>

namespace zqm::host {

namespace {

constexpr const char* kWhere = "String";

const StringHandle& handleOf(const std::shared_ptr<Core>& core, REALstring string) {
    core->requireOpen();
    const auto* handle = core->handles().known<StringHandle>(string);
    if (handle == nullptr) {
        throw CallError("this string is gone");
    }
    return *handle;
}

} // namespace

String::String(std::shared_ptr<Core> core, REALstring locked) noexcept
    : core_(std::move(core)), handle_(locked) {}

String::String(const String& other) : core_(other.core_), handle_(other.handle_) {
    if (handle_ != nullptr && core_->isOpen()) {
        core_->lock(handle_, kWhere);
    }
}

String::String(String&& other) noexcept
    : core_(std::move(other.core_)), handle_(std::exchange(other.handle_, nullptr)) {}

String& String::operator=(String other) noexcept {
    std::swap(core_, other.core_);
    std::swap(handle_, other.handle_);
    return *this;
}

String::~String() {
    if (handle_ != nullptr && core_->isOpen()) {
        core_->unlock(handle_, kWhere);
    }
}

REALstring String::release() noexcept {
    return std::exchange(handle_, nullptr);
}

std::string String::bytes() const {
    return handle_ == nullptr ? std::string() : handleOf(core_, handle_).bytes;
}

std::uint32_t String::encoding() const {
    return handle_ == nullptr ? encoding::kUtf8 : handleOf(core_, handle_).encoding;
}

std::string String::text() const {
    if (handle_ == nullptr) {
        return {};
    }
    const StringHandle& handle = handleOf(core_, handle_);
    auto text = convertText(handle.bytes, handle.encoding, encoding::kUtf8);
    if (!text) {
        throw CallError("the bytes of this string are no text of its encoding");
    }
    return std::move(*text);
}

} // namespace zqm::host
