#include "zqmhost/runtime.h"

#include "array_content.h"
#include "class_describer.h"
#include "core.h"
#include "date_content.h"
#include "dictionary_content.h"
#include "event_closure.h"
#include "folder_item_content.h"
#include "memory_block_content.h"
#include "plugin_library.h"
#include "text.h"
#include "text_conversion.h"

#include <CoreFoundation/CoreFoundation.h>
#include <algorithm>
#include <bit>
#include <thread>
#include <utility>

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

void Runtime::requireFile(const std::string& plugin) {
    host::requireFile(plugin);
}

void Runtime::load(const std::string& plugin) {
    const PluginMain pluginMain = loadPluginMain(plugin);
    const std::size_t before = core_->classes().all().size();
    start(pluginMain);
    if (core_->classes().all().size() == before) {
        throw LoadError(plugin + " registered no class");
    }
}

bool Runtime::loadBeside(const std::string& plugin, std::string_view name) {
    const std::optional<std::string> library = libraryBeside(plugin, name);
    if (library) {
        load(*library);
    }
    return library.has_value();
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

std::vector<ClassDescription> Runtime::describeClasses() const {
    std::vector<ClassDescription> descriptions;
    for (const HostClass& type : core_->classes().all()) {
        if (type.record != nullptr) {
            descriptions.push_back(descriptionOf(type));
        }
    }
    return descriptions;
}

Object Runtime::create(std::string_view className) {
    if (!requireClass(*core_, className).creatable) {
        throw CallError("objects of class " + inQuotes(className) + " are not made by its name");
    }
    REALobject object = nullptr;
    guarded([&] { object = core_->newInstance(className); });
    return adopt(object);
}

Value Runtime::callSharedWith(std::string_view className, std::string_view method,
                              const std::vector<Value>& values) {
    return core_->callShared(requireClass(*core_, className), method, values);
}

Value Runtime::callSharedDescribed(std::string_view className, const MethodDescription& method,
                                   const std::vector<Value>& values) {
    return core_->callSharedDescribed(requireClass(*core_, className), method, values);
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

void Runtime::defineClass(const ClassDefinition& definition) {
    core_->classes().define(definition);
}

Text Runtime::text(std::string_view utf8) {
    if (!convertText(utf8, encoding::kUtf8, encoding::kUtf8)) {
        throw CallError("a text of bytes that are no UTF-8");
    }
    return core_->makeText(utf8);
}

Object Runtime::variant(std::int32_t code, Value content) {
    const auto* text = std::get_if<std::string>(&content.content());
    return core_->makeVariant(code, text == nullptr ? std::move(content) : Value(string(*text)));
}

Object Runtime::variant(const Value& value) {
    return core_->boxed(value);
}

Array Runtime::array(ElementType type, const std::vector<Value>& values) {
    Array array = core_->makeArray(type, values.size());
    for (std::size_t index = 0; index < values.size(); ++index) {
        array.set(index, values[index]);
    }
    return array;
}

Dictionary Runtime::dictionary() {
    return Dictionary(core_->makeObject(kDictionaryClass, std::make_unique<DictionaryContent>()));
}

Object Runtime::date(std::int64_t year, std::int64_t month, std::int64_t day, std::int64_t hour,
                     std::int64_t minute, std::int64_t second) {
    const DateContent::Fields fields{year, month, day, hour, minute, second};
    return core_->makeObject(kDateClass, std::make_unique<DateContent>(fields));
}

MemoryBlock Runtime::memoryBlock(std::string_view bytes) {
    MemoryBlock block = memoryBlock(bytes.size());
    block.write(0, bytes);
    return block;
}

MemoryBlock Runtime::memoryBlock(std::size_t size) {
    auto content = std::make_unique<MemoryBlockContent>();
    if (!content->allocate(size)) {
        throw CallError("no room for a memory block of " + std::to_string(size) + " bytes");
    }
    return MemoryBlock(core_->makeObject(kMemoryBlockClass, std::move(content)));
}

FolderItem Runtime::folderItem(std::string_view path) {
    if (!path.starts_with('/')) {
        throw CallError("a folder item of " + inQuotes(path) + ", which is no absolute path");
    }
    return FolderItem(core_->makeObject(kFolderItemClass, std::make_unique<FolderItemContent>(path)));
}

MemoryBlockFaults& Runtime::memoryBlockFaults() {
    return core_->memoryBlockFaults;
}

String Runtime::adopt(REALstring locked) {
    return core_->adopt(locked, kWhere);
}
Text Runtime::adopt(REALtext locked) {
    return core_->adopt(locked, kWhere);
}
Object Runtime::adopt(REALobject locked) {
    return core_->adopt(locked, kWhere);
}
Array Runtime::adopt(REALarray locked) {
    if (locked == nullptr || core_->findContent<ArrayContent>(locked, kWhere) == nullptr) {
        return {};
    }
    return Array(adopt(reinterpret_cast<REALobject>(locked)));
}
String Runtime::borrow(REALstring string) {
    return core_->borrow(string, kWhere);
}
Text Runtime::borrow(REALtext text) {
    return core_->borrow(text, kWhere);
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
        const Seconds slice = std::min(left, kSlice);
        CFRunLoopRunResult result = kCFRunLoopRunTimedOut;
        guarded([&] { result = CFRunLoopRunInMode(kCFRunLoopDefaultMode, slice.count(), true); });
        if (result == kCFRunLoopRunFinished) {
            // Nothing is watched yet: the run loop didn't wait.
            std::this_thread::sleep_for(slice);
        }
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
    if (!handle->members().handlers.contains(wanted.token)) {
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
