#pragma once

#include "plugin/host_interface.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::host {

class Arguments;
class Core;
class Value;
struct MethodDescription;

using EventHandler = std::function<void(const Arguments&)>;

// A host object, holding one lock of it; a default one is nil. Copying locks, destruction unlocks. When the
// last lock goes, the plugin's "Destructor" method and its class destructor run.
//
// Calls throw HostException when the plugin raised, and CallError when they can't be made. Names and types
// match without regard to case.
class Object {
public:
    Object() = default;
    Object(std::shared_ptr<Core> core, REALobject locked) noexcept; // takes over the caller's lock
    // Another lock on the same one, or the lock of the other.
    Object(const Object& other);
    Object(Object&& other) noexcept;
    Object& operator=(Object other) noexcept;
    ~Object(); // an exception that a destructor raises stays with the runtime: Runtime::takeRaised()

    // Whether this is nil.
    bool isNull() const { return handle_ == nullptr; }
    REALobject handle() const { return handle_; } // borrowed
    REALobject release() noexcept;                // hands the lock to the caller; nil afterwards
    std::string className() const;                // as it is declared
    bool isA(std::string_view className) const;   // also of a superclass

    // What follows the host's part of the object: the instance data of its class.
    void* instanceData() const;
    template <typename Data>
    Data& dataAs() const {
        return *static_cast<Data*>(instanceData());
    }

    // As a Variant: the code of its type, and what is in it. Nil is of type 0; an object that is no Variant
    // holds itself.
    std::int32_t variantType() const;
    Value variantValue() const;

    // Gives up the lock, throwing what a destructor raised. Nil afterwards.
    void reset();

    // Calls the method whose overload fits the arguments; a value of no kind when it has no result.
    template <typename... Values>
    Value call(std::string_view method, Values&&... values);
    Value callWith(std::string_view method, const std::vector<Value>& values);
    // Calls the method that is described, of the overload with those types of parameters, whatever others the
    // arguments fit too.
    Value callDescribed(const MethodDescription& method, const std::vector<Value>& values);

    // What the property's getter answers, and what its setter is given.
    Value get(std::string_view property) const;
    void set(std::string_view property, const Value& value);

    // Makes the handler that of this event, in place of an earlier one. It runs on the main thread, in the
    // run loop or inside a call. An exception that it throws leaves the host call or run-loop call around it.
    // A handler that holds its own object keeps it alive until the handler is dropped.
    void on(std::string_view event, EventHandler handler);
    void off(std::string_view event);
    // How often a handler of the event has been called on this object.
    std::size_t timesRaised(std::string_view event) const;

    // Whether both are the same object, or nil.
    friend bool operator==(const Object& one, const Object& other) { return one.handle_ == other.handle_; }

protected:
    // The runtime's inside, which kinds of objects work with.
    const std::shared_ptr<Core>& core() const { return core_; }

private:
    std::shared_ptr<Core> core_;
    REALobject handle_ = nullptr;
};

} // namespace zqm::host
