// A good plugin with one class, "Counter". Each plugin beside this header is this one with a single fault,
// and that fault is all that its source says.

#pragma once

#include "plugin/host_interface.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

extern "C" __attribute__((visibility("default"))) void REALPluginMain(REALresolver resolver);

namespace {

// ---- what the host offers

inline REALresolver hostResolver = nullptr;
inline std::int32_t revision = 0;

// Null, false or 0 where the host lacks the entry point.
template <typename Result, typename... Arguments>
Result host(const char* name, Arguments... arguments) {
    auto* function = reinterpret_cast<Result (*)(Arguments...)>(hostResolver(name));
    return function == nullptr ? Result() : function(arguments...);
}

[[maybe_unused]] REALstring makeString(const std::string& text) {
    constexpr std::uint32_t kUtf8 = 0x08000100;
    return host<REALstring>("REALBuildStringWithEncoding", text.c_str(),
                            static_cast<std::int32_t>(text.size()), kUtf8);
}

[[maybe_unused]] std::string textOf(REALstring string) {
    const char* text = string == nullptr ? nullptr : host<const char*>("StringGetCString", string);
    return text == nullptr ? "" : text;
}

// ---- the class

struct Counter {
    std::int64_t count;
    REALstring title; // one lock is the object's
};

Counter& dataOf(REALobject self) {
    return *reinterpret_cast<Counter*>(reinterpret_cast<char*>(self) + kInstanceDataOffset);
}

void keepTitle(REALobject self, REALstring title) {
    if (title != nullptr) {
        host<void>("REALLockString", title);
    }
    if (dataOf(self).title != nullptr) {
        host<void>("REALUnlockString", dataOf(self).title);
    }
    dataOf(self).title = title;
}

void initialise(REALobject self) {
    dataOf(self) = {};
}

void dispose(REALobject self) {
    keepTitle(self, nullptr);
}

void constructor(REALobject self) {
    dataOf(self).count = 1;
}

void titledConstructor(REALobject self, REALstring title) {
    constructor(self);
    keepTitle(self, title);
}

void destructor(REALobject self) {
    dataOf(self).count = 0;
}

std::int64_t count(REALobject self, std::int64_t /*parameter*/) {
    return dataOf(self).count;
}

void setCount(REALobject self, std::int64_t /*parameter*/, std::int64_t value) {
    dataOf(self).count = value;
}

REALstring title(REALobject self, std::int64_t /*parameter*/) {
    if (dataOf(self).title != nullptr) {
        host<void>("REALLockString", dataOf(self).title);
    }
    return dataOf(self).title;
}

void setTitle(REALobject self, std::int64_t /*parameter*/, REALstring value) {
    keepTitle(self, value);
}

std::uint64_t tokenOf(const EventRecord& event) {
    return revision == 9 ? reinterpret_cast<const std::uint64_t*>(event.hostToken)[1] : event.hostToken;
}

void raiseCounted(REALobject self);

void step(REALobject self, std::int64_t by) {
    const auto sum = static_cast<std::uint64_t>(dataOf(self).count) + static_cast<std::uint64_t>(by);
    dataOf(self).count = static_cast<std::int64_t>(sum);
    raiseCounted(self);
}

REALstring describe(REALobject self, REALstring prefix) {
    return makeString(textOf(prefix) + std::to_string(dataOf(self).count));
}

bool isTitled(REALobject self, REALstring title) {
    return title != nullptr && dataOf(self).title != nullptr && textOf(title) == textOf(dataOf(self).title);
}

void copyFrom(REALobject self, REALobject other) {
    if (other != nullptr) {
        dataOf(self).count = dataOf(other).count;
    }
}

REALobject twin(REALobject self) {
    REALobject made = host<REALobject>("PluginNewInstance", "Counter");
    if (made != nullptr) {
        dataOf(made).count = dataOf(self).count;
    }
    return made;
}

REALstring usualTitle() {
    return makeString("the usual");
}

// Of any signature.
template <typename Function>
MethodFunction anyFunction(Function function) {
    return std::bit_cast<void (*)(REALobject)>(function);
}

// ---- its tables, to which a fault may be done before they are registered

struct CounterPlugin {
    std::vector<PropertyRecord> properties{
        {.name = "Count", .type = "Integer", .getter = count, .setter = setCount},
        {.name = "Title", .type = "String", .getter = title, .setter = setTitle},
        {.name = "Size", .type = "Integer", .getter = count},
    };
    std::vector<MethodRecord> methods{
        {.function = constructor, .declaration = "Constructor()"},
        {.function = titledConstructor, .declaration = "Constructor(title as String)"},
        {.function = destructor, .declaration = "Destructor()"},
        {.function = step, .declaration = "Step(by as Integer)"},
        {.function = describe, .declaration = "Describe(prefix as String) as String"},
        {.function = isTitled, .declaration = "IsTitled(title as String) as Boolean"},
        {.function = copyFrom, .declaration = "CopyFrom(other as Counter)"},
        {.function = twin, .declaration = "Twin() as Counter"},
    };
    std::vector<MethodRecord> sharedMethods{
        {.function = usualTitle, .declaration = "UsualTitle() as String"},
    };
    std::vector<EventRecord> events{{"Counted(count as Integer)"}};
    std::vector<ConstantRecord> constants{{"First=1"}};
    ClassRecord record{
        .version = 13, .name = "Counter", .dataSize = 16, .constructor = initialise, .destructor = dispose};

    PropertyRecord& property(std::string_view name) {
        for (PropertyRecord& property : properties) {
            if (name == property.name) {
                return property;
            }
        }
        __builtin_trap();
    }

    MethodRecord& method(std::string_view name) {
        for (MethodRecord& method : methods) {
            if (std::string_view(method.declaration).starts_with(std::string(name) + "(")) {
                return method;
            }
        }
        __builtin_trap();
    }

    void announce(REALresolver resolver) {
        hostResolver = resolver;
        const double version = host<double>("REALGetRBVersion");
        revision = version >= 2013.04   ? 13
                   : version >= 2013.03 ? 12
                   : version >= 2013.0  ? 11
                   : version >= 2012.0  ? 10
                                        : 9;
        host<void>("RegisterPluginVersion", revision);
    }

    ClassRecord& fill() {
        record.version = static_cast<std::uint32_t>(revision);
        record.properties = properties.data();
        record.propertyCount = properties.size();
        record.methods = methods.data();
        record.methodCount = methods.size();
        record.sharedMethods = sharedMethods.data();
        record.sharedMethodCount = sharedMethods.size();
        record.events = events.data();
        record.eventCount = events.size();
        record.constants = constants.data();
        record.constantCount = constants.size();
        return record;
    }

    static void add(ClassRecord& record) { host<void>("PluginRegisterClass", static_cast<void*>(&record)); }

    void start(REALresolver resolver) {
        announce(resolver);
        add(fill());
    }
};

CounterPlugin& counterPlugin() {
    static CounterPlugin plugin;
    return plugin;
}

void raiseCounted(REALobject self) {
    using Handler = void (*)(REALobject, std::int64_t);
    const std::uint64_t token = tokenOf(counterPlugin().events.front());
    if (auto* handler = reinterpret_cast<Handler>(host<void*>("GetEventInstance", self, token))) {
        host<void>("REALLockObject", self);
        handler(self, dataOf(self).count);
        host<void>("REALUnlockObject", self);
    }
}

} // namespace
