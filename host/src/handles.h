// Every handle that the host gave out, with its kind and state. Nothing that a plugin passes is touched
// before it was found here.

#pragma once

#include "object_content.h"
#include "plugin/host_interface.h"
#include "reports.h"
#include "zqmhost/report.h"
#include "zqmhost/value.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tsl/robin_map.h>
#include <vector>

namespace zqm::host {

class EventClosure;
struct HostClass;

enum class HandleKind { Object, String, Text, StringData };

struct Handle {
    explicit Handle(HandleKind ofKind) : kind(ofKind) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    virtual ~Handle() = default;

    const void* address() const { return address_; }

    HandleKind kind;
    bool alive = true;
    std::int64_t locks = 1;

protected:
    const void* address_ = this; // what the plugin holds

    friend class Handles;
    // Frees what it holds, though not the address, which stays taken for a while.
    virtual void die() = 0;
};

struct StringHandle final : Handle {
    static constexpr HandleKind kKind = HandleKind::String;
    StringHandle(std::string_view itsBytes, std::uint32_t itsEncoding)
        : Handle(kKind), bytes(itsBytes), encoding(itsEncoding) {}

    REALstring handle() { return reinterpret_cast<REALstring>(this); }

    std::string bytes;
    std::uint32_t encoding;

protected:
    void die() override { std::string().swap(bytes); }
};

struct TextHandle final : Handle {
    static constexpr HandleKind kKind = HandleKind::Text;
    explicit TextHandle(std::string_view inUtf8) : Handle(kKind), utf8(inUtf8) {}

    REALtext handle() { return reinterpret_cast<REALtext>(this); }

    std::string utf8;

protected:
    void die() override { std::string().swap(utf8); }
};

// The converted bytes behind a filled-in REALstringData.
struct StringDataHandle final : Handle {
    static constexpr HandleKind kKind = HandleKind::StringData;
    explicit StringDataHandle(std::string itsBytes) : Handle(kKind), bytes(std::move(itsBytes)) {}

    std::string bytes;

protected:
    void die() override { std::string().swap(bytes); }
};

struct ObjectHandle final : Handle {
    static constexpr HandleKind kKind = HandleKind::Object;
    explicit ObjectHandle(const HostClass& ofType);
    ~ObjectHandle() override;

    REALobject handle() { return static_cast<REALobject>(block_); }
    bool headerIntact() const;
    void* instanceData() { return static_cast<char*>(block_) + kInstanceDataOffset; }

    // Null when it is of another kind.
    template <typename Content>
    Content* contentAs() const {
        return dynamic_cast<Content*>(content.get());
    }

    // What few of many objects have.
    struct Members {
        std::map<std::string, Value> kept; // properties that the host keeps, by lowered name
        std::map<std::uint64_t, std::shared_ptr<EventClosure>> handlers; // by token
        std::map<std::uint64_t, std::size_t> raised;                     // calls of handlers, by token
    };
    Members& members();
    const Members& members() const;
    // Takes them off the object.
    std::map<std::uint64_t, std::shared_ptr<EventClosure>> takeHandlers();

    const HostClass& type;
    bool ending = false;
    std::unique_ptr<ObjectContent> content;

protected:
    void die() override;

private:
    std::unique_ptr<Members> members_; // made at first use
    void* block_;                      // header and instance data
    std::size_t size_;
};

class Handles {
public:
    explicit Handles(Reports& reports) : reports_(&reports) {}
    ~Handles();
    Handles(const Handles&) = delete;
    Handles& operator=(const Handles&) = delete;

    template <typename Kind, typename... Arguments>
    Kind& add(Arguments&&... arguments) {
        auto made = std::make_unique<Kind>(std::forward<Arguments>(arguments)...);
        Kind& handle = *made;
        insert(std::move(made));
        return handle;
    }

    // The live handle at the address; otherwise null and, on behalf of `where`, a report.
    template <typename Kind>
    Kind* find(const void* address, std::string_view where) {
        return static_cast<Kind*>(find(address, Kind::kKind, where));
    }
    // The same without a report.
    template <typename Kind>
    Kind* known(const void* address) const {
        return static_cast<Kind*>(known(address, Kind::kKind));
    }

    // Its last lock is gone. The address is not given out again for a while, so that a late use is noticed.
    void retire(Handle& handle);

    // Some live object of a class whose ends are to be told; null when there is none.
    ObjectHandle* anyWithAnEnd() const;

    Ledger ledger() const;

    // Forgets everything at once; for the end of the runtime.
    void clear();

private:
    void insert(std::unique_ptr<Handle> handle);
    Handle* find(const void* address, HandleKind kind, std::string_view where);
    Handle* known(const void* address, HandleKind kind) const;
    void letGo(std::unique_ptr<ObjectContent> content);

    Reports* reports_;
    // Handles made one after another are mostly used one after another, so neighbours stay neighbours.
    struct AddressHash {
        std::size_t operator()(const void* address) const {
            constexpr unsigned int kAlignmentBits = 4;
            return reinterpret_cast<std::uintptr_t>(address) >> kAlignmentBits;
        }
    };
    tsl::robin_map<const void*, std::unique_ptr<Handle>, AddressHash> handles_;
    std::deque<const void*> retired_;
    // What dead objects held, which may hold others: let go one after another, however deep.
    std::vector<std::unique_ptr<ObjectContent>> dying_;
    bool lettingGo_ = false;
};

} // namespace zqm::host
