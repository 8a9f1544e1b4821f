#include "cli/validate/plugin_life.h"

#include <algorithm>
#include <cctype>
#include <deque>
#include <string_view>
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

bool sameName(std::string_view one, std::string_view other) {
    return std::ranges::equal(one, other, [](unsigned char left, unsigned char right) {
        return std::tolower(left) == std::tolower(right);
    });
}

bool isOfLife(const host::MethodDescription& method) {
    return sameName(method.name, "Constructor") || sameName(method.name, "Destructor");
}

} // namespace

PluginLife::PluginLife(host::Runtime& runtime, std::uint64_t seed, LifePlan plan, Told told)
    : runtime_(&runtime), plan_(plan), told_(std::move(told)), classes_(runtime.describeClasses()),
      values_(runtime, seed) {}

void PluginLife::live() {
    for (const host::ClassDescription& type : classes_) {
        of_ = type.name;
        for (const host::MethodDescription& method : type.sharedMethods) {
            useMethod(method, [&](const std::vector<Value>& arguments) {
                return runtime_->callSharedWith(type.name, method.name, arguments);
            });
        }
        const Methods constructors = plan_.constructed ? constructorsOf(type) : Methods();
        for (const host::MethodDescription& constructor : constructors) {
            liveObject(type, &constructor);
        }
        if (constructors.empty()) {
            liveObject(type, nullptr);
        }
    }
    for (Object& object : std::exchange(found_, {})) {
        const auto type = std::ranges::find_if(classes_, [&](const host::ClassDescription& one) {
            return sameName(one.name, object.className());
        });
        if (type != classes_.end()) {
            of_ = type->name;
            useMembers(*type, object);
        }
    }
    found_.clear();
    attempt("run loop", [&] { runtime_->runFor(kTimeForEvents); });
    runtime_->takeRaised();
}

void PluginLife::liveObject(const host::ClassDescription& type, const host::MethodDescription* constructor) {
    Object object;
    attempt("a new " + type.name, [&] { object = runtime_->create(type.name); });
    if (object.isNull()) {
        return;
    }
    for (const host::ClassDescription* one : lineOf(type)) {
        for (const host::EventDescription& event : one->events) {
            object.on(event.name, [](const host::Arguments&) {});
        }
    }
    if (constructor != nullptr) {
        std::vector<Value> arguments;
        for (const host::ParameterDescription& parameter : constructor->parameters) {
            arguments.push_back(values_.ordinary(parameter.type));
        }
        call(*constructor, arguments,
             [&](const std::vector<Value>& chosen) { return object.callWith(constructor->name, chosen); });
    }
    useMembers(type, object);
    attempt("events of " + type.name, [&] { runtime_->runFor(kTimeForEvents); });
    attempt("the end of a " + type.name, [&] { object.reset(); });
}

void PluginLife::useMembers(const host::ClassDescription& type, Object& object) {
    for (const host::ClassDescription* one : lineOf(type)) {
        for (const host::PropertyDescription& property : one->properties) {
            useProperty(property, object);
        }
        for (const host::MethodDescription& method : one->methods) {
            if (!isOfLife(method) && method.isCallable) {
                useMethod(method, [&](const std::vector<Value>& arguments) {
                    return object.callWith(method.name, arguments);
                });
            }
        }
    }
}

void PluginLife::useProperty(const host::PropertyDescription& property, Object& object) {
    const std::string name = of_ + "." + property.name;
    const auto get = [&] {
        if (property.isReadable) {
            attempt(name, [&] { take(object.get(property.name)); });
        }
    };
    get();
    if (!property.isWritable) {
        return;
    }
    std::vector<Value> values{values_.ordinary(property.type)};
    if (plan_.extreme) {
        std::ranges::move(values_.extremes(property.type), std::back_inserter(values));
    }
    for (std::size_t index = 0; index < values.size(); ++index) {
        const std::string which = index == 0 ? "an ordinary value" : "extreme value " + std::to_string(index);
        attempt(name + " = " + which, [&] { object.set(property.name, values[index]); });
        get();
    }
}

void PluginLife::useMethod(const host::MethodDescription& method, const Perform& perform) {
    const auto ordinary = [&] {
        std::vector<Value> values;
        for (const host::ParameterDescription& parameter : method.parameters) {
            values.push_back(values_.ordinary(parameter.type));
        }
        return values;
    };
    const int choices = method.parameters.empty() ? 1 : kChoices;
    for (int choice = 0; choice < choices; ++choice) {
        call(method, ordinary(), perform);
    }
    if (!plan_.extreme) {
        return;
    }
    std::vector<std::vector<Value>> extremes;
    for (const host::ParameterDescription& parameter : method.parameters) {
        extremes.push_back(values_.extremes(parameter.type));
    }
    for (std::size_t index = 0; index < extremes.size(); ++index) {
        for (const Value& value : extremes[index]) {
            std::vector<Value> arguments = ordinary();
            arguments[index] = value;
            call(method, arguments, perform);
        }
    }
    for (int mixture = 0; mixture < kExtremeMixtures && extremes.size() > 1; ++mixture) {
        std::vector<Value> arguments;
        for (const std::vector<Value>& values : extremes) {
            arguments.push_back(values_.oneOf(values));
        }
        call(method, arguments, perform);
    }
}

void PluginLife::call(const host::MethodDescription& method, const std::vector<Value>& chosen,
                      const Perform& perform) {
    std::deque<Value> slots; // never moved: they are passed by reference
    std::vector<Value> arguments;
    for (std::size_t index = 0; index < chosen.size(); ++index) {
        if (method.parameters[index].byRef) {
            arguments.emplace_back(host::ByRef{&slots.emplace_back(chosen[index])});
        } else {
            arguments.push_back(chosen[index]);
        }
    }
    attempt(of_ + "." + declaration(method), [&] { take(perform(arguments)); });
    for (const Value& slot : slots) {
        take(slot);
    }
}

void PluginLife::attempt(const std::string& what, const std::function<void()>& action) {
    told_(what);
    try {
        action();
    } catch (
        const host::Error&) { // NOLINT(bugprone-empty-catch): raised, or a call that no program could make
    }
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

std::vector<const host::ClassDescription*> PluginLife::lineOf(const host::ClassDescription& type) const {
    std::vector<const host::ClassDescription*> line;
    const host::ClassDescription* one = &type;
    while (one != nullptr && std::ranges::find(line, one) == line.end()) {
        line.push_back(one);
        const auto super = std::ranges::find_if(classes_, [&](const host::ClassDescription& other) {
            return !one->super.empty() && sameName(other.name, one->super);
        });
        one = super == classes_.end() ? nullptr : &*super;
    }
    return line;
}

PluginLife::Methods PluginLife::constructorsOf(const host::ClassDescription& type) const {
    Methods constructors;
    for (const host::ClassDescription* one : lineOf(type)) {
        std::ranges::copy_if(one->methods, std::back_inserter(constructors),
                             [](const host::MethodDescription& method) {
                                 return sameName(method.name, "Constructor") && method.isCallable;
                             });
    }
    return constructors;
}

} // namespace zqm::cli
