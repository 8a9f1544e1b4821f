// Every handle that the host gave out, with its kind and state. Nothing that a plugin passes is touched
// before it was found here.

#pragma once

#include "handle_slots.h"
#include "object_content.h"
#include "plugin/host_interface.h"
#include "reports.h"
#include "zqmhost/report.h"
#include "zqmhost/value.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

namespace zqm::host {

class EventClosure;
struct HostClass;

struct Handle {
    Handle() = default;
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() = default;

    std::int64_t locks = 1;
};

struct StringHandle final : Handle {
    static constexpr HandleKind kKind = HandleKind::String;
    StringHandle(std::string_view itsBytes, std::uint32_t itsEncoding)
        : bytes(itsBytes), encoding(itsEncoding) {}

    static HandleLayout layoutFor(std::string_view, std::uint32_t) { return {kKind, sizeof(StringHandle)}; }
    REALstring handle() { return reinterpret_cast<REALstring>(this); }

    std::string bytes;
    std::uint32_t encoding;
};

struct TextHandle final : Handle {
    static constexpr HandleKind kKind = HandleKind::Text;
    explicit TextHandle(std::string_view inUtf8) : utf8(inUtf8) {}

    static HandleLayout layoutFor(std::string_view) { return {kKind, sizeof(TextHandle)}; }
    REALtext handle() { return reinterpret_cast<REALtext>(this); }

    std::string utf8;
};

// The converted bytes behind a filled-in REALstringData.
struct StringDataHandle final : Handle {
    static constexpr HandleKind kKind = HandleKind::StringData;
    explicit StringDataHandle(std::string itsBytes) : bytes(std::move(itsBytes)) {}

    static HandleLayout layoutFor(const std::string&) { return {kKind, sizeof(StringDataHandle)}; }

    std::string bytes;
};

struct ObjectHandle final : Handle {
    static constexpr HandleKind kKind = HandleKind::Object;
    explicit ObjectHandle(const HostClass& ofType);

    static HandleLayout layoutFor(const HostClass& type);
    REALobject handle() { return static_cast<REALobject>(block()); }
    bool headerIntact() const;
    void* instanceData() { return static_cast<char*>(block()) + kInstanceDataOffset; }

    // Null when it is of another kind.
    template <typename Content>
    Content* contentAs() const {
        static_assert(std::is_final_v<Content>); // so that its type alone tells
        const ObjectContent* held = content.get();
        return held != nullptr && typeid(*held) == typeid(Content) ? static_cast<Content*>(content.get())
                                                                   : nullptr;
    }

    // What few of many objects have.
    struct Members {
        std::map<std::string, Value> kept; // properties that the host keeps, by lowered name
        std::map<std::uint64_t, std::shared_ptr<EventClosure>> handlers; // by token
        std::map<std::uint64_t, std::size_t> raised;                     // calls of handlers, by token
    };
    Members& members();
    const Members& members() const;
    // Each takes them off the object.
    std::map<std::uint64_t, std::shared_ptr<EventClosure>> takeHandlers();
    std::unique_ptr<Members> takeMembers() { return std::move(members_); }

    const HostClass& type;
    bool ending = false;
    std::unique_ptr<ObjectContent> content;

private:
    // Header and instance data, which plugins are given.
    void* block() const;

    std::unique_ptr<Members> members_; // made at first use
};

class Handles {
public:
    explicit Handles(Reports& reports) : reports_(&reports) {}
    ~Handles();
    Handles(const Handles&) = delete;
    Handles& operator=(const Handles&) = delete;

    template <typename Kind, typename... Arguments>
    Kind& add(Arguments&&... arguments) {
        void* memory = slots_.take(Kind::layoutFor(arguments...));
        try {
            auto* handle = new (memory) Kind(std::forward<Arguments>(arguments)...);
            slots_.makeLive(memory);
            return *handle;
        } catch (...) {
            slots_.giveBack(memory);
            throw;
        }
    }

    // The live handle at the address; otherwise null and, on behalf of `where`, a report.
    template <typename Kind>
    Kind* find(const void* address, std::string_view where) {
        auto* handle = known<Kind>(address);
        if (handle == nullptr) {
            reportUnknown(address, Kind::kKind, where);
        }
        return handle;
    }
    // The same without a report.
    template <typename Kind>
    Kind* known(const void* address) const {
        const HandleSlots::Slot slot = slots_.at(address);
        const bool fits = slot.state == HandleSlots::State::Live && slot.kind == Kind::kKind;
        return fits ? static_cast<Kind*>(slot.memory) : nullptr;
    }

    // Its last lock is gone. The address is not given out again for a while, so that a late use is noticed.
    void retire(ObjectHandle& handle);
    template <typename Kind>
    void retire(Kind& handle) {
        handle.~Kind();
        keepDead(&handle);
    }

    // Some live object of a class whose ends are to be told; null when there is none.
    ObjectHandle* anyWithAnEnd() const;

    Ledger ledger() const;

    // Forgets everything at once; for the end of the runtime.
    void clear();

private:
    void reportUnknown(const void* address, HandleKind kind, std::string_view where);
    void keepDead(void* memory);
    void letGo(std::unique_ptr<ObjectContent> content);

    Reports* reports_;
    HandleSlots slots_;
    std::deque<void*> retired_; // memory of dead ones
    // What dead objects held, which may hold others: let go one after another, however deep.
    std::vector<std::unique_ptr<ObjectContent>> dying_;
    bool lettingGo_ = false;
};

} // namespace zqm::host
