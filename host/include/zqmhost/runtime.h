// A host runtime for plugins in one process: classes, objects, strings, exceptions and events. It offers no
// arrays, Variants, dates, memory blocks or files: the resolver answers null for their names. One runtime may
// be active at a time, because the plugin's resolver is a plain C function; several may follow one another.

#pragma once

#include "plugin/host_interface.h"
#include "zqmhost/entry_point_control.h"
#include "zqmhost/errors.h"
#include "zqmhost/object.h"
#include "zqmhost/report.h"
#include "zqmhost/string.h"
#include "zqmhost/value.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::host {

// The version of a host whose options say nothing else.
inline constexpr double kDefaultVersion = 2023.02;

struct Options {
    std::optional<double> version = kDefaultVersion; // none: "REALGetRBVersion" is not offered
    std::vector<std::string> refused = {};           // entry points refused from the start
};

using Seconds = std::chrono::duration<double>;

class Runtime {
public:
    // Throws CallError while another runtime exists.
    explicit Runtime(const Options& options = {});
    // Ends what is still alive: each object's "Destructor" and class destructor run.
    ~Runtime();
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;

    // Loads a plugin library and calls its "REALPluginMain". Throws LoadError. The library stays loaded for
    // the life of the process.
    void load(const std::filesystem::path& plugin);
    // The same for an entry function that is linked into the program.
    void start(void (*pluginMain)(REALresolver));
    // For functions of a plugin that are called without its entry function.
    static REALresolver resolver();
    // As the plugin's call of "PluginRegisterClass".
    void registerClass(ClassRecord& record);

    // What the plugin announced with "RegisterPluginVersion".
    std::optional<std::int32_t> announcedRevision() const;
    std::vector<std::string> classNames() const; // of registered classes, in order

    // A new instance: its class constructor runs, no "Constructor" method does.
    Object create(std::string_view className);
    // The same, and its "Constructor" method that fits the arguments has run.
    template <typename... Values>
    Object construct(std::string_view className, Values&&... values) {
        Object object = create(className);
        object.call("Constructor", std::forward<Values>(values)...);
        return object;
    }
    template <typename... Values>
    Value callShared(std::string_view className, std::string_view method, Values&&... values) {
        return callSharedWith(className, method, {Value(std::forward<Values>(values))...});
    }
    Value callSharedWith(std::string_view className, std::string_view method,
                         const std::vector<Value>& values);
    std::string constant(std::string_view className, std::string_view name) const;

    String string(std::string_view bytes, std::uint32_t encoding = encoding::kUtf8);
    // A handle that a plugin function answered: its one lock is now the caller's.
    String adopt(REALstring locked);
    Object adopt(REALobject locked);
    // A handle that someone else holds: locked once more.
    String borrow(REALstring string);
    Object borrow(REALobject object);

    // Runs the function as the host runs a plugin's: throws HostException when it raised.
    void guarded(const std::function<void()>& function);
    // What was raised outside of any host call, oldest first; empties the list.
    std::vector<RaisedException> takeRaised();

    // Runs the main thread's run loop, which is where events come from: until the predicate is true (asked
    // between events) or the time is over, answering the predicate's last answer; or for that time. What an
    // event handler throws, and what a plugin raises in the run loop, is thrown from here.
    bool runUntil(const std::function<bool()>& predicate, Seconds atMost);
    void runFor(Seconds time);
    // Until the object's event has been raised once more, answering the arguments it brought; nothing when
    // the time is over or the object has ended. An event without a handler is given an empty one first,
    // because plugins raise no others. Throws CallError when there is no such event.
    std::optional<std::vector<Value>> runUntilRaised(const Object& object, std::string_view event,
                                                     Seconds atMost);

    EntryPointControl entryPoints();
    std::vector<Report> reports() const;
    void clearReports();
    Ledger ledger() const;

private:
    std::shared_ptr<Core> core_;
};

} // namespace zqm::host
