#include "handles.h"

#include "event_closure.h"
#include "host_class.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace zqm::host {

namespace {

// So many dead handles keep their address.
constexpr std::size_t kRetiredHandles = 1024;

constexpr unsigned char kHeaderPattern = 0xA7;

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

// Calls with the handle as what it is.
template <typename Action>
void withHandle(HandleKind kind, void* memory, Action action) {
    switch (kind) {
    case HandleKind::Object:
        return action(*static_cast<ObjectHandle*>(memory));
    case HandleKind::String:
        return action(*static_cast<StringHandle*>(memory));
    case HandleKind::Text:
        return action(*static_cast<TextHandle*>(memory));
    case HandleKind::StringData:
        return action(*static_cast<StringDataHandle*>(memory));
    }
}

} // namespace

ObjectHandle::ObjectHandle(const HostClass& ofType) : type(ofType) {
    std::memset(block(), kHeaderPattern, kInstanceDataOffset);
    std::memset(instanceData(), 0, ofType.dataSize);
}

HandleLayout ObjectHandle::layoutFor(const HostClass& type) {
    return {kKind, sizeof(ObjectHandle), kInstanceDataOffset + type.dataSize};
}

void* ObjectHandle::block() const {
    const auto self = reinterpret_cast<std::uintptr_t>(this);
    return reinterpret_cast<void*>(self + HandleSlots::lead(sizeof(ObjectHandle)));
}

bool ObjectHandle::headerIntact() const {
    const auto* header = static_cast<const unsigned char*>(block());
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

Handles::~Handles() {
    clear();
}

void Handles::reportUnknown(const void* address, HandleKind kind, std::string_view where) {
    const std::string who(where);
    const std::string wanted = nameOf(kind);
    const HandleSlots::Slot slot = slots_.at(address);
    if (address == nullptr) {
        reports_->add(Report::Kind::NullHandle, who + ": null instead of " + wanted);
    } else if (slot.state == HandleSlots::State::Free) {
        reports_->add(Report::Kind::ForeignHandle, who + ": never given out as " + wanted);
    } else if (slot.kind != kind) {
        reports_->add(Report::Kind::WrongKind, who + ": " + nameOf(slot.kind) + " instead of " + wanted);
    } else {
        reports_->add(Report::Kind::DeadHandle, who + ": " + wanted + " whose last lock is gone");
    }
}

void Handles::retire(ObjectHandle& handle) {
    // Either may hold other handles, which find this one dead.
    auto content = std::move(handle.content);
    const auto members = handle.takeMembers();
    handle.~ObjectHandle();
    keepDead(&handle);
    letGo(std::move(content));
}

void Handles::keepDead(void* memory) {
    slots_.makeDead(memory);
    retired_.push_back(memory);
    if (retired_.size() > kRetiredHandles) {
        slots_.giveBack(retired_.front());
        retired_.pop_front();
    }
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
    ObjectHandle* found = nullptr;
    slots_.forEachLive([&](HandleKind kind, void* memory) {
        if (found == nullptr && kind == HandleKind::Object) {
            auto* object = static_cast<ObjectHandle*>(memory);
            found = object->type.hasAnEnd() ? object : nullptr;
        }
    });
    return found;
}

void Handles::clear() {
    // What the handles hold may hold other handles.
    const HandleSlots slots = std::exchange(slots_, {});
    retired_.clear();
    slots.forEachLive([](HandleKind kind, void* memory) {
        withHandle(kind, memory, [](auto& handle) { std::destroy_at(&handle); });
    });
}

Ledger Handles::ledger() const {
    Ledger ledger;
    const auto countOf = [&](HandleKind kind) -> Ledger::Count& {
        switch (kind) {
        case HandleKind::String:
            return ledger.strings;
        case HandleKind::Text:
            return ledger.texts;
        case HandleKind::StringData:
            return ledger.stringData;
        case HandleKind::Object:
            break;
        }
        return ledger.objects;
    };
    slots_.forEachLive([&](HandleKind kind, void* memory) {
        Ledger::Count& count = countOf(kind);
        ++count.handles;
        withHandle(kind, memory, [&](auto& handle) { count.locks += handle.locks; });
    });
    return ledger;
}

} // namespace zqm::host
