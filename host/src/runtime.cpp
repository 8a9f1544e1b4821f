#include "zqmhost/runtime.h"

#include "core.h"
#include "event_closure.h"
#include "plugin_library.h"
#include "text.h"

#include <CoreFoundation/CoreFoundation.h>
#include <algorithm>
#include <bit>

namespace zqm::host {

namespace {

constexpr const char* kWhere = "Runtime";

// The run loop hands control back at least this often, for the predicate to be asked.
constexpr Seconds kSlice{0.05};

void* resolve(const char* name) {
    Core* core = Core::active();
    if (core == nullptr) {
        return nullptr;
    }
    if (name == nullptr) {
        core->reports().add(Report::Kind::BadArgument, "resolver: no name");
        return nullptr;
    }
    return core->entryPoints().look(name);
}

const HostClass& requireClass(Core& core, std::string_view name) {
    const HostClass* type = core.classes().find(name);
    if (type == nullptr) {
        throw CallError("there is no class " + inQuotes(name));
    }
    return *type;
}

} // namespace

Runtime::Runtime(const Options& options) : core_(std::make_shared<Core>(options)) {
    if (!options.version) {
        core_->entryPoints().refuse("REALGetRBVersion");
    }
    core_->activate();
}

Runtime::~Runtime() {
    core_->close();
}

void Runtime::load(const std::filesystem::path& plugin) {
    const PluginMain pluginMain = loadPluginMain(plugin);
    const std::size_t before = core_->classes().all().size();
    start(pluginMain);
    if (core_->classes().all().size() == before) {
        throw LoadError(plugin.string() + " registered no class");
    }
}

void Runtime::start(void (*pluginMain)(REALresolver)) {
    guarded([&] { pluginMain(resolver()); });
}

REALresolver Runtime::resolver() {
    return resolve;
}

void Runtime::registerClass(ClassRecord& record) {
    core_->classes().add(&record, core_->announcedRevision);
}

std::optional<std::int32_t> Runtime::announcedRevision() const {
    return core_->announcedRevision;
}

std::vector<std::string> Runtime::classNames() const {
    std::vector<std::string> names;
    for (const HostClass& type : core_->classes().all()) {
        if (type.record != nullptr) {
            names.push_back(type.name);
        }
    }
    return names;
}

Object Runtime::create(std::string_view className) {
    requireClass(*core_, className);
    REALobject object = nullptr;
    guarded([&] { object = core_->newInstance(className); });
    return adopt(object);
}

Value Runtime::callSharedWith(std::string_view className, std::string_view method,
                              const std::vector<Value>& values) {
    return core_->callShared(requireClass(*core_, className), method, values);
}

std::string Runtime::constant(std::string_view className, std::string_view name) const {
    const HostClass& type = requireClass(*core_, className);
    const Constant* constant = findConstant(type, name);
    if (constant == nullptr) {
        throw CallError("there is no constant " + type.name + '.' + std::string(name));
    }
    return constant->value;
}

String Runtime::string(std::string_view bytes, std::uint32_t encoding) {
    return core_->makeString(bytes, encoding);
}

String Runtime::adopt(REALstring locked) {
    return core_->adopt(locked, kWhere);
}
Object Runtime::adopt(REALobject locked) {
    return core_->adopt(locked, kWhere);
}
String Runtime::borrow(REALstring string) {
    return core_->borrow(string, kWhere);
}
Object Runtime::borrow(REALobject object) {
    return core_->borrow(object, kWhere);
}

void Runtime::guarded(const std::function<void()>& function) {
    core_->guarded(function);
}

std::vector<RaisedException> Runtime::takeRaised() {
    return core_->raised().takeStray();
}

bool Runtime::runUntil(const std::function<bool()>& predicate, Seconds atMost) {
    const auto end = std::chrono::steady_clock::now() + atMost;
    while (!predicate()) {
        const Seconds left = end - std::chrono::steady_clock::now();
        if (left <= Seconds::zero()) {
            return false;
        }
        guarded([&] { CFRunLoopRunInMode(kCFRunLoopDefaultMode, std::min(left, kSlice).count(), true); });
    }
    return true;
}

void Runtime::runFor(Seconds time) {
    runUntil([] { return false; }, time);
}

std::optional<std::vector<Value>> Runtime::runUntilRaised(const Object& object, std::string_view event,
                                                          Seconds atMost) {
    auto* handle = core_->handles().known<ObjectHandle>(object.handle());
    if (handle == nullptr) {
        throw CallError("the object is nil or gone");
    }
    const Event& wanted = core_->requireEvent(*handle, event);
    if (!handle->handlers.contains(wanted.token)) {
        core_->setHandler(*handle, event, [](const Arguments&) {});
    }
    const RaisedEvents::Awaited awaited(core_->events(), *handle, wanted);
    runUntil([&] { return awaited.isOver(); }, atMost);
    return awaited.values();
}

EntryPointControl Runtime::entryPoints() {
    return EntryPointControl(*core_);
}

std::vector<Report> Runtime::reports() const {
    return core_->reports().all();
}

void Runtime::clearReports() {
    core_->reports().clear();
}

Ledger Runtime::ledger() const {
    return core_->handles().ledger();
}

} // namespace zqm::host
