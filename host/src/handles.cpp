#include "handles.h"

#include "event_closure.h"
#include "host_class.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <utility>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(address, size) static_cast<void>(0)
#define ASAN_UNPOISON_MEMORY_REGION(address, size) static_cast<void>(0)
#endif

namespace zqm::host {

namespace {

// So many dead handles keep their address.
constexpr std::size_t kRetiredHandles = 1024;

constexpr std::align_val_t kBlockAlignment{16};
constexpr unsigned char kHeaderPattern = 0xA7;
constexpr unsigned char kDeadPattern = 0xDD;

const char* nameOf(HandleKind kind) {
    switch (kind) {
    case HandleKind::Object:
        return "an object";
    case HandleKind::String:
        return "a string";
    case HandleKind::Text:
        return "a text";
    case HandleKind::StringData:
        return "string data";
    }
    return "unknown";
}

} // namespace

ObjectHandle::ObjectHandle(const HostClass& ofType)
    : Handle(kKind), type(ofType), size_(kInstanceDataOffset + ofType.dataSize) {
    block_ = ::operator new(size_, kBlockAlignment);
    std::memset(block_, kHeaderPattern, kInstanceDataOffset);
    std::memset(static_cast<char*>(block_) + kInstanceDataOffset, 0, ofType.dataSize);
    address_ = block_;
}

ObjectHandle::~ObjectHandle() {
    ASAN_UNPOISON_MEMORY_REGION(block_, size_);
    ::operator delete(block_, kBlockAlignment);
}

bool ObjectHandle::headerIntact() const {
    const auto* header = static_cast<const unsigned char*>(block_);
    return std::all_of(header, header + kInstanceDataOffset,
                       [](unsigned char byte) { return byte == kHeaderPattern; });
}

ObjectHandle::Members& ObjectHandle::members() {
    if (members_ == nullptr) {
        members_ = std::make_unique<Members>();
    }
    return *members_;
}

const ObjectHandle::Members& ObjectHandle::members() const {
    static const Members none;
    return members_ != nullptr ? *members_ : none;
}

std::map<std::uint64_t, std::shared_ptr<EventClosure>> ObjectHandle::takeHandlers() {
    return members_ != nullptr ? std::exchange(members_->handlers, {}) : decltype(Members::handlers)();
}

void ObjectHandle::die() {
    members_.reset();
    std::memset(block_, kDeadPattern, size_);
    ASAN_POISON_MEMORY_REGION(block_, size_);
}

Handles::~Handles() = default;

void Handles::insert(std::unique_ptr<Handle> handle) {
    const void* address = handle->address();
    handles_.emplace(address, std::move(handle));
}

Handle* Handles::known(const void* address, HandleKind kind) const {
    const auto found = handles_.find(address);
    const bool fits = found != handles_.end() && found->second->alive && found->second->kind == kind;
    return fits ? found->second.get() : nullptr;
}

Handle* Handles::find(const void* address, HandleKind kind, std::string_view where) {
    if (Handle* handle = known(address, kind)) {
        return handle;
    }
    const std::string who(where);
    const std::string wanted = nameOf(kind);
    const auto found = handles_.find(address);
    if (address == nullptr) {
        reports_->add(Report::Kind::NullHandle, who + ": null instead of " + wanted);
    } else if (found == handles_.end()) {
        reports_->add(Report::Kind::ForeignHandle, who + ": never given out as " + wanted);
    } else if (found->second->kind != kind) {
        reports_->add(Report::Kind::WrongKind,
                      who + ": " + nameOf(found->second->kind) + " instead of " + wanted);
    } else {
        reports_->add(Report::Kind::DeadHandle, who + ": " + wanted + " whose last lock is gone");
    }
    return nullptr;
}

void Handles::retire(Handle& handle) {
    handle.alive = false;
    handle.locks = 0;
    std::unique_ptr<ObjectContent> content;
    if (handle.kind == HandleKind::Object) {
        content = std::move(static_cast<ObjectHandle&>(handle).content);
    }
    handle.die();
    retired_.push_back(handle.address());
    if (retired_.size() > kRetiredHandles) {
        handles_.erase(retired_.front());
        retired_.pop_front();
    }
    letGo(std::move(content));
}

void Handles::letGo(std::unique_ptr<ObjectContent> content) {
    if (content == nullptr) {
        return;
    }
    dying_.push_back(std::move(content));
    if (lettingGo_) {
        return;
    }
    lettingGo_ = true;
    while (!dying_.empty()) {
        const auto next = std::move(dying_.back());
        dying_.pop_back();
    }
    lettingGo_ = false;
}

ObjectHandle* Handles::anyWithAnEnd() const {
    for (const auto& [address, handle] : handles_) {
        auto* object =
            handle->kind == HandleKind::Object ? static_cast<ObjectHandle*>(handle.get()) : nullptr;
        if (object != nullptr && object->alive && object->type.hasAnEnd()) {
            return object;
        }
    }
    return nullptr;
}

void Handles::clear() {
    // What the handles hold may hold other handles.
    const auto handles = std::exchange(handles_, {});
    retired_.clear();
}

Ledger Handles::ledger() const {
    Ledger ledger;
    for (const auto& [address, handle] : handles_) {
        if (!handle->alive) {
            continue;
        }
        Ledger::Count* count = &ledger.objects;
        if (handle->kind == HandleKind::String) {
            count = &ledger.strings;
        } else if (handle->kind == HandleKind::Text) {
            count = &ledger.texts;
        } else if (handle->kind == HandleKind::StringData) {
            count = &ledger.stringData;
        }
        ++count->handles;
        count->locks += handle->locks;
    }
    return ledger;
}

} // namespace zqm::host
