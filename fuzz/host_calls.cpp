// Whatever host code does with the plugin's classes: it makes objects, constructs them or doesn't, calls
// members, reads and sets properties, passes values of any kind, lets services of its own fail and drops
// objects in any order. Nothing of it breaches the interface, and nothing is left behind.

#include "fuzz/byte_source.h"
#include "fuzz/check.h"
#include "fuzz/generated_values.h"
#include "fuzz/quiet_log.h"
#include "fuzz/target.h"
#include "tests/support/sibling_library.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>
#include <zqmhost/zqmhost.h>

namespace {

using namespace zqm;
using host::ClassDescription;
using host::Value;

std::size_t callsMade = 0;

// Each of these starts an engine, which takes a thousand times as long as another call: few inputs may.
constexpr std::string_view kEngineCalls[]{"startSpeakingString", "phonemesFromText", "startListening",
                                          "NSSpeechPhonemeSymbolsProperty"};

// Nobody can tell that these failed: they answer nothing, or 0, which says that an array has one element. A
// host where they do has its locks and arrays wrong, whatever the plugin does.
constexpr std::string_view kNeverFailing[]{"REALLockString",
                                           "REALUnlockString",
                                           "PluginLockText",
                                           "PluginUnlockText",
                                           "REALLockObject",
                                           "REALUnlockObject",
                                           "PluginDisposeStringData",
                                           "PluginStringArrayInsertProc",
                                           "PluginObjectArrayInsertProc",
                                           "RuntimeUBound"};

constexpr std::string_view kServices[]{
#define ENTRY_POINT(wrapper, name, Result, Parameters) name,
#define ARRAY_ENTRY_POINT(wrapper, name, Result, Parameters) name,
#include "plugin/entry_points.def"
#undef ENTRY_POINT
#undef ARRAY_ENTRY_POINT
};

constexpr std::size_t kOwnClasses = 3;

template <typename List>
bool holds(const List& list, std::string_view wanted) {
    return std::ranges::find(list, wanted) != std::end(list);
}

// The one host of this process: the plugin keeps what it has learnt of its host for as long as it is loaded.
// What kind of host it is, the environment says.
host::Runtime& runtime() {
    static host::Runtime instance([] {
        const char* const version = std::getenv("ZQM_FUZZ_HOST_VERSION");
        return host::Options{.version = version != nullptr ? std::stod(version) : host::kDefaultVersion};
    }());
    return instance;
}

const std::vector<ClassDescription>& classes() {
    static const std::vector<ClassDescription> instance = [] {
        support::loadPlugin(runtime(), ZQM_PLUGIN);
        return runtime().describeClasses();
    }();
    return instance;
}

// Removed with the process.
const std::string& outputFolder() {
    static const std::string instance = [] {
        std::string pattern = (std::filesystem::temp_directory_path() / "zqm-fuzz-XXXXXX").string();
        fuzz::check(mkdtemp(pattern.data()) != nullptr, "a temporary folder can be made");
        return pattern;
    }();
    static const struct Removal {
        ~Removal() {
            std::error_code ignored;
            std::filesystem::remove_all(instance, ignored);
        }
    } removal;
    return instance;
}

class Session {
public:
    Session(fuzz::ByteSource& source, bool mayStartEngines)
        : source_(source), mayStartEngines_(mayStartEngines), classes_(classes()), runtime_(runtime()),
          values_(runtime_, source, "file://" + outputFolder() + "/speech.wav") {}

    void run() {
        constexpr std::size_t kMostSteps = 400;
        for (std::size_t step = 0; step < kMostSteps && !source_.isEmpty(); ++step) {
            const std::size_t before = callsMade;
            try {
                this->step();
            } catch (const host::HostException& raised) {
                fuzz::check(!raised.className().empty(), "what is raised is of a class");
            } catch (const host::CallError&) {
                callsMade = before; // no host can make that call
            }
        }
    }

    // What must hold once all is dropped.
    void end() {
        runtime_.entryPoints().failNone();
        runtime_.entryPoints().allowAll();
        values_.clear();
        try {
            runtime_.runFor(host::Seconds(0));
        } catch (const host::HostException&) { // NOLINT(bugprone-empty-catch): of a service that failed
        }
        runtime_.takeRaised();
        for (const host::Report& report : runtime_.reports()) {
            fuzz::check(false, "the interface is kept",
                        std::string(nameOf(report.kind)) + ", " + report.text);
        }
        const host::Ledger left = runtime_.ledger();
        fuzz::check(left == host::Ledger{}, "nothing is left behind",
                    std::to_string(left.objects.handles) + " objects, " +
                        std::to_string(left.strings.handles) + " strings, " +
                        std::to_string(left.texts.handles) + " texts, " +
                        std::to_string(left.stringData.handles) + " string data");
    }

private:
    void step() {
        switch (source_.choice(16)) {
        case 0:
        case 1:
            create();
            break;
        case 2:
            drop();
            break;
        case 3:
        case 4:
        case 5:
            getProperty();
            break;
        case 6:
        case 7:
            setProperty();
            break;
        case 8:
            callShared();
            break;
        case 9:
            failService();
            break;
        case 10:
            listen();
            break;
        case 11:
            ++callsMade;
            runtime_.runFor(host::Seconds(0));
            break;
        default:
            callMethod();
        }
    }

    const ClassDescription* classOf(const host::Object& object) {
        const auto found = std::ranges::find(classes_, object.className(), &ClassDescription::name);
        return found == classes_.end() ? nullptr : &*found;
    }

    // One of those that host code can make, and what it is.
    host::Object* object() {
        auto& objects = values_.objects();
        return objects.empty() ? nullptr : &objects[source_.choice(objects.size())];
    }

    // Mostly one of the plugin's own, which come last.
    const ClassDescription& someClass() {
        const std::size_t count =
            source_.choice(4) != 0 ? std::min(kOwnClasses, classes_.size()) : classes_.size();
        return classes_[classes_.size() - 1 - source_.choice(count)];
    }

    void create() {
        constexpr std::size_t kMostObjects = 16;
        const ClassDescription& type = someClass();
        const bool isConstructed = source_.choice(4) != 0;
        ++callsMade;
        host::Object made = runtime_.create(type.name);
        if (isConstructed) {
            ++callsMade;
            // Of none or one argument; a class without a constructor refuses both.
            source_.flag() ? made.call("Constructor")
                           : made.call("Constructor", values_.of({"String", false}));
        }
        if (values_.objects().size() < kMostObjects) {
            values_.objects().push_back(std::move(made));
        }
    }

    void drop() {
        auto& objects = values_.objects();
        if (!objects.empty()) {
            ++callsMade;
            objects.erase(objects.begin() + static_cast<std::ptrdiff_t>(source_.choice(objects.size())));
        }
    }

    bool mayCall(std::string_view name) const { return mayStartEngines_ || !holds(kEngineCalls, name); }

    std::vector<Value> arguments(const host::MethodDescription& method, Value& reference) {
        std::vector<Value> values;
        for (const host::ParameterDescription& parameter : method.parameters) {
            if (parameter.byRef) {
                values.push_back(host::ByRef{source_.choice(8) == 0 ? nullptr : &reference});
            } else {
                values.push_back(values_.of(parameter.type));
            }
        }
        return values;
    }

    void callMethod() {
        host::Object* const found = object();
        if (found == nullptr) {
            return;
        }
        const host::Object target = *found;
        const ClassDescription* const type = classOf(target);
        if (type == nullptr || type->methods.empty()) {
            return;
        }
        const host::MethodDescription& method = type->methods[source_.choice(type->methods.size())];
        if (!mayCall(method.name)) {
            return;
        }
        Value reference;
        const std::vector<Value> values = arguments(method, reference);
        // The symbols of a property ask an engine.
        if (!mayStartEngines_ && std::ranges::any_of(values, isPhonemeSymbols)) {
            return;
        }
        ++callsMade;
        keep(target.className() == type->name ? found->callWith(method.name, values) : Value());
    }

    static bool isPhonemeSymbols(const Value& value) {
        try {
            return value.asText() == "phsy";
        } catch (const host::CallError&) {
            return false;
        }
    }

    void keep(const Value& answer) {
        constexpr std::size_t kMostObjects = 16;
        const auto* const made = std::get_if<host::Object>(&answer.content());
        if (made != nullptr && !made->isNull() && values_.objects().size() < kMostObjects) {
            values_.objects().push_back(*made);
        }
    }

    const host::PropertyDescription* property(const host::Object& target) {
        const ClassDescription* const type = classOf(target);
        return type == nullptr || type->properties.empty()
                   ? nullptr
                   : &type->properties[source_.choice(type->properties.size())];
    }

    void getProperty() {
        if (host::Object* const target = object()) {
            if (const auto* const found = property(*target)) {
                ++callsMade;
                keep(target->get(found->name));
            }
        }
    }

    void setProperty() {
        if (host::Object* const target = object()) {
            if (const auto* const found = property(*target); found != nullptr && found->isWritable) {
                const Value value = values_.of(found->type);
                ++callsMade;
                target->set(found->name, value);
            }
        }
    }

    void callShared() {
        const ClassDescription& type = someClass();
        if (type.sharedMethods.empty()) {
            return;
        }
        const host::MethodDescription& method = type.sharedMethods[source_.choice(type.sharedMethods.size())];
        Value reference;
        const std::vector<Value> values = arguments(method, reference);
        ++callsMade;
        keep(runtime_.callSharedWith(type.name, method.name, values));
    }

    void failService() {
        const std::string_view name = kServices[source_.choice(std::size(kServices))];
        if (holds(kNeverFailing, name)) {
            return;
        }
        switch (source_.choice(8)) {
        case 0:
            runtime_.entryPoints().failEveryCall(name);
            break;
        case 1:
            runtime_.entryPoints().refuse(name);
            break;
        case 2:
            runtime_.entryPoints().failNone();
            runtime_.entryPoints().allowAll();
            break;
        default:
            runtime_.entryPoints().failCall(name, 1 + source_.choice(8));
        }
    }

    // A handler, which now and then drops what it is told of.
    void listen() {
        host::Object* const target = object();
        const ClassDescription* const type = target == nullptr ? nullptr : classOf(*target);
        if (type == nullptr || type->events.empty()) {
            return;
        }
        const std::string event = type->events[source_.choice(type->events.size())].name;
        const bool isDropping = source_.choice(4) == 0;
        ++callsMade;
        target->on(event, [this, isDropping](const host::Arguments& told) {
            if (isDropping) {
                std::erase(values_.objects(), told.sender());
            }
        });
    }

    fuzz::ByteSource& source_;
    bool mayStartEngines_;
    const std::vector<ClassDescription>& classes_;
    host::Runtime& runtime_;
    fuzz::GeneratedValues values_;
};

} // namespace

namespace {

// What an input may do if it asks for it, but for most of those that follow on one that did: libFuzzer is
// fond of them.
bool mayStartEngines(fuzz::ByteSource& source) {
    constexpr std::size_t kAsked = 255;
    constexpr std::size_t kInputsBetween = 200;
    static std::size_t left = 0;
    left -= left > 0 ? 1 : 0;
    if (source.choice(256) != kAsked || left > 0) {
        return false;
    }
    left = kInputsBetween;
    return true;
}

} // namespace

extern "C" std::size_t zqmFuzzedCalls() {
    return callsMade;
}

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
    // Nobody is to hear it, and no sound server is to be started for it.
    setenv("PULSE_SERVER", "unix:/nonexistent/sound", 1);
    fuzz::quietLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    fuzz::ByteSource source(bytes, size);
    Session session(source, mayStartEngines(source));
    session.run();
    session.end();
    return 0;
}
