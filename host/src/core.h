// One runtime, from the inside. The entry points' functions and the C++ API both work on it.

#pragma once

#include "class_registry.h"
#include "entry_points.h"
#include "handles.h"
#include "plugin/host_interface.h"
#include "raised_events.h"
#include "raised_exceptions.h"
#include "reports.h"
#include "text.h"
#include "zqmhost/array.h"
#include "zqmhost/errors.h"
#include "zqmhost/runtime.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace zqm::host {

class Core : public std::enable_shared_from_this<Core> {
public:
    explicit Core(const Options& options);
    Core(const Core&) = delete;
    Core& operator=(const Core&) = delete;
    ~Core();

    // The one that a resolver call means; null between runtimes.
    static Core* active();
    void activate();
    void close();
    bool isOpen() const { return active() == this; }
    // Throws CallError once the runtime has ended.
    void requireOpen() const;
    bool onItsThread() const { return std::this_thread::get_id() == thread_; }

    Reports& reports() { return reports_; }
    Handles& handles() { return handles_; }
    ClassRegistry& classes() { return classes_; }
    const ClassRegistry& classes() const { return classes_; }
    EntryPoints& entryPoints() { return entryPoints_; }
    RaisedExceptions& raised() { return raised_; }
    RaisedEvents& events() { return events_; }
    std::optional<double> version() const { return version_; }
    std::optional<std::int32_t> announcedRevision;
    MemoryBlockFaults memoryBlockFaults;

    // Strings
    String makeString(std::string_view bytes, std::uint32_t encoding);
    // A handle from a plugin, reported on behalf of `where` if it is none; nil stays nil.
    String adopt(REALstring locked, std::string_view where);
    String borrow(REALstring string, std::string_view where);
    void lock(REALstring string, std::string_view where);
    void unlock(REALstring string, std::string_view where);

    // Texts
    Text makeText(std::string_view utf8);
    Text adopt(REALtext locked, std::string_view where);
    Text borrow(REALtext text, std::string_view where);
    void lock(REALtext text, std::string_view where);
    void unlock(REALtext text, std::string_view where);

    // Objects
    Object adopt(REALobject locked, std::string_view where);
    Object borrow(REALobject object, std::string_view where);
    void lock(REALobject object, std::string_view where);
    void unlock(REALobject object, std::string_view where);
    // Null when there is no such class. Carries one lock.
    REALobject newInstance(std::string_view className);
    // Of a built-in class, with that content; no constructor runs.
    Object makeObject(std::string_view className, std::unique_ptr<ObjectContent> content);
    // What the object holds; otherwise null and, on behalf of `where`, a report.
    template <typename Content>
    Content* findContent(const void* object, std::string_view where) {
        const auto* handle = handles_.find<ObjectHandle>(object, where);
        Content* content = handle == nullptr ? nullptr : handle->contentAs<Content>();
        if (handle != nullptr && content == nullptr) {
            reports_.add(Report::Kind::WrongKind,
                         std::string(where) + ": " + handle->type.name + " instead of " + Content::kWhat);
        }
        return content;
    }

    // Throws what an allocation throws.
    Array makeArray(ElementType type, std::size_t size);

    // Variants. An object, an array and nil are Variants as they stand; all else is put into an object.
    Object makeVariant(std::int32_t code, Value content);
    Object boxed(const Value& value);

    // Raises an exception of that built-in class into the call that runs.
    void raise(std::string_view className, std::string_view message);

    // For a handle of that type, none of which it need be.
    void lock(const Type& type, void* handle);
    void unlock(const Type& type, void* handle);

    // Members. They throw CallError and HostException.
    Value call(ObjectHandle& object, std::string_view name, const std::vector<Value>& values);
    Value callDescribed(ObjectHandle& object, const MethodDescription& method,
                        const std::vector<Value>& values);
    Value callShared(const HostClass& type, std::string_view name, const std::vector<Value>& values);
    Value callSharedDescribed(const HostClass& type, const MethodDescription& method,
                              const std::vector<Value>& values);
    Value getProperty(ObjectHandle& object, std::string_view name);
    void setProperty(ObjectHandle& object, std::string_view name, const Value& value);
    void setHandler(ObjectHandle& object, std::string_view name, EventHandler handler);
    const Event& requireEvent(const ObjectHandle& object, std::string_view name) const;

    // Whether this host has the global method of that name.
    bool hasGlobalMethod(std::string_view name) const {
        return !absentGlobalMethods_.contains(lowered(name));
    }
    // Whether arrays show where their elements are.
    bool showsElements() const;

    // Runs a plugin's function: throws what it raised, or what a handler threw in it.
    void guarded(const std::function<void()>& function);
    void keepThrown(std::exception_ptr thrown) { raised_.keepThrown(std::move(thrown)); }

private:
    void runConstructors(const HostClass& type, REALobject object);
    void end(ObjectHandle& object);
    // A plugin may still hold the function of a handler that is replaced while it runs.
    void retire(std::shared_ptr<EventClosure> handler);
    Value invoke(const Method& method, REALobject self, const std::vector<Value>& values);

    std::thread::id thread_ = std::this_thread::get_id();
    std::optional<double> version_;
    std::set<std::string> absentGlobalMethods_; // lowered
    Reports reports_;
    ClassRegistry classes_;
    EntryPoints entryPoints_;
    Handles handles_;
    RaisedExceptions raised_;
    RaisedEvents events_;
    std::vector<std::shared_ptr<EventClosure>> retiredHandlers_;
};

} // namespace zqm::host
