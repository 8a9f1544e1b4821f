// A host runtime for plugins in one process: classes, objects, strings, texts, Variants, arrays,
// dictionaries, dates, memory blocks, folder items, exceptions and events. One runtime may be active at a
// time, because the plugin's resolver is a plain C function; several may follow one another.

#pragma once

#include "plugin/host_interface.h"
#include "zqmhost/array.h"
#include "zqmhost/class_definition.h"
#include "zqmhost/class_description.h"
#include "zqmhost/dictionary.h"
#include "zqmhost/entry_point_control.h"
#include "zqmhost/errors.h"
#include "zqmhost/folder_item.h"
#include "zqmhost/memory_block.h"
#include "zqmhost/object.h"
#include "zqmhost/report.h"
#include "zqmhost/string.h"
#include "zqmhost/text.h"
#include "zqmhost/value.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::host {

// The version of a host whose options say nothing else.
inline constexpr double kDefaultVersion = 2023.02;

// What host a runtime is.
struct Options {
    std::optional<double> version = kDefaultVersion; // none: "REALGetRBVersion" is not offered
    std::vector<std::string> refused = {};           // entry points refused from the start
    // Members of built-in classes that this host lacks, as "MemoryBlock.Operator_Convert", and global
    // methods, as "VarType". A constructor is called "Constructor". Unknown names throw CallError.
    std::vector<std::string> without = {};
};

using Seconds = std::chrono::duration<double>;

// The host: loads plugins, makes objects of their classes, and runs the run loop.
class Runtime {
public:
    // Throws CallError while another runtime exists.
    explicit Runtime(const Options& options = {});
    // Ends what is still alive: each object's "Destructor" and class destructor run.
    ~Runtime();
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;

    // Throws LoadError, with the reason, where no file of this path can be found; nothing is loaded.
    static void requireFile(const std::string& plugin);
    // Loads the plugin library of this path and calls its "REALPluginMain". Throws LoadError. The library
    // stays loaded for the life of the process.
    void load(const std::string& plugin);
    // The same for another library in the plugin's folder, named without what libraries' names end in here,
    // as "libOther"; does nothing and answers false when there is none.
    bool loadBeside(const std::string& plugin, std::string_view name);
    // The same for an entry function that is linked into the program.
    void start(void (*pluginMain)(REALresolver));
    // For functions of a plugin that are called without its entry function.
    static REALresolver resolver();
    // As the plugin's call of "PluginRegisterClass".
    void registerClass(ClassRecord& record);

    // What the plugin announced with "RegisterPluginVersion".
    std::optional<std::int32_t> announcedRevision() const;
    std::vector<std::string> classNames() const; // of registered classes, in order
    // Of the same. What their records have wrong is left out; the reports tell it.
    std::vector<ClassDescription> describeClasses() const;

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
    // As Object::callDescribed().
    Value callSharedDescribed(std::string_view className, const MethodDescription& method,
                              const std::vector<Value>& values);
    std::string constant(std::string_view className, std::string_view name) const;

    // A class of the host program's own. Throws CallError.
    void defineClass(const ClassDefinition& definition);

    // Of bytes in an encoding, which are taken as they are.
    String string(std::string_view bytes, std::uint32_t encoding = encoding::kUtf8);
    // Throws CallError when the bytes are no UTF-8.
    Text text(std::string_view utf8);
    // A Variant of that type code, whatever its content; text in it is made a host string.
    Object variant(std::int32_t code, Value content);
    // What host code would make of the value: nil and objects stay as they are.
    Object variant(const Value& value);
    Array array(ElementType type, const std::vector<Value>& values = {});
    Dictionary dictionary();
    // Fields outside of the calendar stay as they are given.
    Object date(std::int64_t year, std::int64_t month = 1, std::int64_t day = 1, std::int64_t hour = 0,
                std::int64_t minute = 0, std::int64_t second = 0);
    MemoryBlock memoryBlock(std::string_view bytes);
    // Of so many zero bytes. Throws CallError when there is no room for them.
    MemoryBlock memoryBlock(std::size_t size);
    MemoryBlockFaults& memoryBlockFaults();
    // Of an absolute path, whether something is there or not. Throws CallError for any other.
    FolderItem folderItem(std::string_view path);

    // A handle that a plugin function answered: its one lock is now the caller's.
    String adopt(REALstring locked);
    Text adopt(REALtext locked);
    Object adopt(REALobject locked);
    Array adopt(REALarray locked);
    // A handle that someone else holds: locked once more.
    String borrow(REALstring string);
    Text borrow(REALtext text);
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

    // What the plugin gets of the host, to take parts of it away.
    EntryPointControl entryPoints();
    // Breaches of the interface by plugins, oldest first.
    std::vector<Report> reports() const;
    void clearReports(); // forgets them
    // What is alive now.
    Ledger ledger() const;

private:
    std::shared_ptr<Core> core_;
};

} // namespace zqm::host
