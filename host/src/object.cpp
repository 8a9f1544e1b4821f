#include "zqmhost/object.h"

#include "core.h"
#include "event_closure.h"
#include "text.h"
#include "variant_content.h"

#include <utility>

namespace zqm::host {

namespace {

constexpr const char* kWhere = "Object";

ObjectHandle& handleOf(const std::shared_ptr<Core>& core, REALobject object) {
    if (object == nullptr) {
        throw CallError("the object is nil");
    }
    core->requireOpen();
    auto* handle = core->handles().known<ObjectHandle>(object);
    if (handle == nullptr) {
        throw CallError("this object is gone");
    }
    return *handle;
}

} // namespace

Object::Object(std::shared_ptr<Core> core, REALobject locked) noexcept
    : core_(std::move(core)), handle_(locked) {}

Object::Object(const Object& other) : core_(other.core_), handle_(other.handle_) {
    if (handle_ != nullptr && core_->isOpen()) {
        core_->lock(handle_, kWhere);
    }
}

Object::Object(Object&& other) noexcept
    : core_(std::move(other.core_)), handle_(std::exchange(other.handle_, nullptr)) {}

Object& Object::operator=(Object other) noexcept {
    std::swap(core_, other.core_);
    std::swap(handle_, other.handle_);
    return *this;
}

Object::~Object() {
    if (handle_ != nullptr && core_->isOpen()) {
        core_->unlock(handle_, kWhere);
    }
}

REALobject Object::release() noexcept {
    return std::exchange(handle_, nullptr);
}

std::string Object::className() const {
    return handleOf(core_, handle_).type.name;
}

bool Object::isA(std::string_view className) const {
    const HostClass& type = handleOf(core_, handle_).type;
    const HostClass* wanted = core_->classes().find(className);
    return wanted != nullptr && type.isA(*wanted);
}

void* Object::instanceData() const {
    return handleOf(core_, handle_).instanceData();
}

std::int32_t Object::variantType() const {
    return handle_ == nullptr ? variant::kNil : variantCode(handleOf(core_, handle_));
}

Value Object::variantValue() const {
    if (handle_ == nullptr) {
        return {};
    }
    const auto* content = handleOf(core_, handle_).contentAs<VariantContent>();
    return content == nullptr ? Value(*this) : content->value;
}

void Object::reset() {
    const std::shared_ptr<Core> core = core_;
    REALobject object = release();
    if (object != nullptr && core->isOpen()) {
        core->guarded([&] { core->unlock(object, kWhere); });
    }
}

Value Object::callWith(std::string_view method, const std::vector<Value>& values) {
    ObjectHandle& handle = handleOf(core_, handle_);
    const std::shared_ptr<Core> core = core_; // a handler may replace this very object
    return core->call(handle, method, values);
}

Value Object::callDescribed(const MethodDescription& method, const std::vector<Value>& values) {
    ObjectHandle& handle = handleOf(core_, handle_);
    const std::shared_ptr<Core> core = core_;
    return core->callDescribed(handle, method, values);
}

Value Object::get(std::string_view property) const {
    ObjectHandle& handle = handleOf(core_, handle_);
    return core_->getProperty(handle, property);
}

void Object::set(std::string_view property, const Value& value) {
    ObjectHandle& handle = handleOf(core_, handle_);
    core_->setProperty(handle, property, value);
}

void Object::on(std::string_view event, EventHandler handler) {
    ObjectHandle& handle = handleOf(core_, handle_);
    core_->setHandler(handle, event, std::move(handler));
}

void Object::off(std::string_view event) {
    on(event, nullptr);
}

std::size_t Object::timesRaised(std::string_view event) const {
    const ObjectHandle& handle = handleOf(core_, handle_);
    const auto& raised = handle.members().raised;
    const auto found = raised.find(core_->requireEvent(handle, event).token);
    return found == raised.end() ? 0 : found->second;
}

} // namespace zqm::host
