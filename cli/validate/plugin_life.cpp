#include "cli/validate/plugin_life.h"

#include "cli/validate/passed_arguments.h"

#include <iterator>
#include <utility>

namespace zqm::cli {
namespace {

using host::Object;
using host::Value;

// Ordinary arguments are chosen by chance; each method gets so many choices.
constexpr int kChoices = 2;
constexpr int kExtremeMixtures = 4;
constexpr std::size_t kMostFound = 8;
constexpr host::Seconds kTimeForEvents{0.002};

bool isOfLife(const host::MethodDescription& method) {
    return sameName(method.name, "Constructor") || sameName(method.name, "Destructor");
}

} // namespace

PluginLife::PluginLife(host::Runtime& runtime, std::uint64_t seed, std::string folder, LifePlan plan,
                       Told told)
    : runtime_(&runtime), plan_(plan), told_(std::move(told)), classes_(runtime.describeClasses()),
      values_(runtime, classes_, seed, std::move(folder)) {}

void PluginLife::live() {
    for (const host::ClassDescription& type : classes_.all()) {
        of_ = type.name;
        liveClass(type);
    }
    liveFoundObjects();
    attempt("run loop", [&] { runtime_->runFor(kTimeForEvents); });
    runtime_->takeRaised();
}

void PluginLife::liveClass(const host::ClassDescription& type) {
    for (const host::MethodDescription& method : type.sharedMethods) {
        if (method.isCallable) {
            useMethod(method, [&](const Arguments& arguments) {
                return runtime_->callSharedDescribed(type.name, method, arguments);
            });
        }
    }
    const PluginClasses::Methods constructors =
        plan_.constructed ? classes_.constructorsOf(type) : PluginClasses::Methods();
    if (constructors.empty()) {
        liveObject(type, [&](Object& object) { useMembers(type, object); });
    }
    for (const host::MethodDescription& constructor : constructors) {
        liveObject(type, [&](Object& object) {
            construct(constructor, object, ordinaryFor(constructor));
            useMembers(type, object);
        });
        if (plan_.extreme) {
            withExtremes(constructor, [&](const Arguments& arguments) {
                liveObject(type, [&](Object& object) {
                    construct(constructor, object, arguments);
                    readProperties(type, object);
                });
            });
        }
    }
}

void PluginLife::liveObject(const host::ClassDescription& type, const std::function<void(Object&)>& use) {
    const std::string making = "a new " + type.name;
    told_(making);
    Object object;
    try {
        object = runtime_->create(type.name);
        called_.insert(making);
    } catch (const host::Error& error) {
        failed_[making] = error.what();
        return;
    }
    for (const host::ClassDescription* one : classes_.lineOf(type)) {
        for (const host::EventDescription& event : one->events) {
            object.on(event.name, [](const host::Arguments&) {});
        }
    }
    use(object);
    attempt("events of " + type.name, [&] { runtime_->runFor(kTimeForEvents); });
    attempt("the end of a " + type.name, [&] { object.reset(); });
}

void PluginLife::liveFoundObjects() {
    for (Object& object : std::exchange(found_, {})) {
        if (const host::ClassDescription* type = classes_.find(object.className())) {
            of_ = type->name;
            useMembers(*type, object);
        }
    }
    found_.clear();
}

void PluginLife::construct(const host::MethodDescription& constructor, Object& object,
                           const Arguments& arguments) {
    call(constructor, arguments,
         [&](const Arguments& passed) { return object.callDescribed(constructor, passed); });
}

void PluginLife::useMembers(const host::ClassDescription& type, Object& object) {
    for (const host::ClassDescription* one : classes_.lineOf(type)) {
        for (const host::PropertyDescription& property : one->properties) {
            useProperty(property, object);
        }
        for (const host::MethodDescription& method : one->methods) {
            if (!isOfLife(method) && method.isCallable) {
                useMethod(method, [&](const Arguments& arguments) {
                    return object.callDescribed(method, arguments);
                });
            }
        }
    }
}

void PluginLife::readProperties(const host::ClassDescription& type, Object& object) {
    for (const host::ClassDescription* one : classes_.lineOf(type)) {
        for (const host::PropertyDescription& property : one->properties) {
            readProperty(property, object);
        }
    }
}

void PluginLife::readProperty(const host::PropertyDescription& property, Object& object) {
    if (property.isReadable) {
        attempt(of_ + "." + property.name, [&] { take(object.get(property.name)); });
    }
}

void PluginLife::useProperty(const host::PropertyDescription& property, Object& object) {
    readProperty(property, object);
    if (!property.isWritable) {
        return;
    }
    const std::string setting = of_ + "." + property.name + " =";
    told_("values for " + of_ + "." + property.name);
    std::vector<Value> values{values_.ordinary(property.type)};
    if (plan_.extreme) {
        std::ranges::move(values_.extremes(property.type), std::back_inserter(values));
    }
    for (std::size_t index = 0; index < values.size(); ++index) {
        std::string what = setting;
        what += index == 0 ? " an ordinary value" : " extreme value " + std::to_string(index);
        attempt(setting, what, [&] { object.set(property.name, values[index]); });
        readProperty(property, object);
    }
}

void PluginLife::useMethod(const host::MethodDescription& method, const Perform& perform) {
    const int choices = method.parameters.empty() ? 1 : kChoices;
    for (int choice = 0; choice < choices; ++choice) {
        call(method, ordinaryFor(method), perform);
    }
    if (plan_.extreme) {
        withExtremes(method, [&](const Arguments& arguments) { call(method, arguments, perform); });
    }
}

void PluginLife::withExtremes(const host::MethodDescription& method,
                              const std::function<void(const Arguments&)>& use) {
    told_("arguments of " + nameOf(method));
    std::vector<Arguments> extremes;
    for (const host::ParameterDescription& parameter : method.parameters) {
        extremes.push_back(values_.extremes(parameter.type));
    }
    for (std::size_t index = 0; index < extremes.size(); ++index) {
        for (const Value& value : extremes[index]) {
            Arguments arguments = ordinaryFor(method);
            arguments[index] = value;
            use(arguments);
        }
    }
    for (int mixture = 0; mixture < kExtremeMixtures && extremes.size() > 1; ++mixture) {
        Arguments arguments;
        for (const Arguments& values : extremes) {
            arguments.push_back(values_.oneOf(values));
        }
        use(arguments);
    }
}

// Making them calls the plugin too.
PluginLife::Arguments PluginLife::ordinaryFor(const host::MethodDescription& method) {
    if (!method.parameters.empty()) {
        told_("arguments of " + nameOf(method));
    }
    return values_.ordinaryFor(method);
}

void PluginLife::call(const host::MethodDescription& method, const Arguments& chosen,
                      const Perform& perform) {
    const PassedArguments arguments(method, chosen);
    attempt(nameOf(method), [&] { take(perform(arguments.values())); });
    for (const Value& slot : arguments.slots()) {
        take(slot);
    }
}

void PluginLife::attempt(const std::string& member, const std::string& what,
                         const std::function<void()>& action) {
    told_(what);
    try {
        action();
        called_.insert(member);
    } catch (const host::HostException&) {
        called_.insert(member);
    } catch (const host::Error& error) {
        failed_[member] = error.what();
    }
}

std::vector<std::string> PluginLife::uncalled() const {
    std::vector<std::string> lines;
    for (const auto& [member, cause] : failed_) {
        if (!called_.contains(member)) {
            lines.push_back(member);
            lines.back().append(": ").append(cause);
        }
    }
    return lines;
}

void PluginLife::take(const Value& answer) {
    if (const auto* string = std::get_if<host::String>(&answer.content())) {
        try {
            if (!string->isNull() && !string->text().empty()) {
                values_.learn(string->text());
            }
        } catch (const host::CallError&) { // NOLINT(bugprone-empty-catch): no text of its encoding
        }
    } else if (const auto* object = std::get_if<Object>(&answer.content())) {
        if (!object->isNull() && found_.size() < kMostFound) {
            found_.push_back(*object);
        }
    }
}

std::string PluginLife::nameOf(const host::MethodDescription& method) const {
    return of_ + "." + declaration(method);
}

} // namespace zqm::cli
