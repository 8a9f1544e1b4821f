// A plugin for the host's own tests, with a member of every kind that the interface knows. It keeps to the
// rules; plugins that don't stand in bad_records_test.cpp and misuse_test.cpp.

#include "plugin/host_interface.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

REALresolver resolver = nullptr;
std::int64_t destroyed = 0;
std::int32_t revision = 13;

template <typename Result, typename... Arguments>
Result host(const char* name, Arguments... arguments) {
    auto* function = reinterpret_cast<Result (*)(Arguments...)>(resolver(name));
    return function == nullptr ? Result() : function(arguments...);
}

struct Widget {
    std::int64_t count;
    double scale;
    REALstring title;
    bool enabled;
    float factor;
};

Widget& dataOf(REALobject self) {
    return *reinterpret_cast<Widget*>(reinterpret_cast<char*>(self) + kInstanceDataOffset);
}

REALstring makeString(const std::string& text) {
    constexpr std::uint32_t kUtf8 = 0x08000100;
    return host<REALstring>("REALBuildStringWithEncoding", text.c_str(),
                            static_cast<std::int32_t>(text.size()), kUtf8);
}

std::string textOf(REALstring string) {
    return string == nullptr ? std::string() : host<const char*>("StringGetCString", string);
}

void setTitle(REALobject self, REALstring title) {
    if (title != nullptr) {
        host<void>("REALLockString", title);
    }
    if (dataOf(self).title != nullptr) {
        host<void>("REALUnlockString", dataOf(self).title);
    }
    dataOf(self).title = title;
}

// ---- life

void construct(REALobject self) {
    dataOf(self).factor = 1.5F;
}
void destruct(REALobject self) {
    setTitle(self, nullptr);
    ++destroyed;
}

void constructor(REALobject self) {
    dataOf(self).count = 1;
}
void titledConstructor(REALobject self, REALstring title) {
    constructor(self);
    setTitle(self, title);
}

using EventFunction = void (*)(REALobject, std::int64_t, double, float, std::int64_t, std::int64_t,
                               REALstring, REALobject);

enum WidgetEvent { Pinged, Ending };
EventRecord widgetEvents[] = {
    {.declaration = "pinged(number as Integer, real as Double, single as Single, flag as Boolean, "
                    "small as Int32, text as String, sender as Widget)"},
    {.declaration = "Ending"},
};

void* handlerOf(REALobject self, WidgetEvent event) {
    std::uint64_t token = widgetEvents[event].hostToken;
    if (revision == 9) {
        token = reinterpret_cast<const std::uint64_t*>(token)[1];
    }
    return host<void*>("GetEventInstance", self, token);
}

void destructor(REALobject self) {
    if (auto* handler = reinterpret_cast<void (*)(REALobject)>(handlerOf(self, Ending))) {
        host<void>("REALLockObject", self);
        handler(self);
        host<void>("REALUnlockObject", self);
    }
}

// ---- properties

std::int64_t count(REALobject self, std::int64_t) {
    return dataOf(self).count;
}
void setCount(REALobject self, std::int64_t, std::int64_t value) {
    dataOf(self).count = value;
}
double scale(REALobject self, std::int64_t) {
    return dataOf(self).scale;
}
void setScale(REALobject self, std::int64_t, double value) {
    dataOf(self).scale = value;
}
bool enabled(REALobject self, std::int64_t) {
    return dataOf(self).enabled;
}
void setEnabled(REALobject self, std::int64_t, bool value) {
    dataOf(self).enabled = value;
}
float factor(REALobject self, std::int64_t) {
    return dataOf(self).factor;
}
void setFactor(REALobject self, std::int64_t, float value) {
    dataOf(self).factor = value;
}
REALstring title(REALobject self, std::int64_t) {
    if (dataOf(self).title != nullptr) {
        host<void>("REALLockString", dataOf(self).title);
    }
    return dataOf(self).title;
}
void setTitleProperty(REALobject self, std::int64_t, REALstring value) {
    setTitle(self, value);
}
std::int64_t parameterBack(REALobject, std::int64_t parameter) {
    return parameter;
}

template <typename Function>
GetterFunction getter(Function function) {
    return std::bit_cast<bool (*)(REALobject, std::int64_t)>(function);
}
template <typename Function>
SetterFunction setter(Function function) {
    return std::bit_cast<void (*)(REALobject, std::int64_t, bool)>(function);
}
template <typename Function>
MethodFunction method(Function function) {
    return std::bit_cast<void (*)(REALobject)>(function);
}

const PropertyRecord widgetProperties[] = {
    {.name = "Count", .type = "Integer", .getter = getter(count), .setter = setter(setCount)},
    {.name = "Scale", .type = "Double", .getter = getter(scale), .setter = setter(setScale)},
    {.name = "Enabled", .type = "Boolean", .getter = getter(enabled), .setter = setter(setEnabled)},
    {.name = "Factor", .type = "Single", .getter = getter(factor), .setter = setter(setFactor)},
    {.name = "Title", .type = "String", .getter = getter(title), .setter = setter(setTitleProperty)},
    {.name = "Fixed", .type = "Integer", .getter = getter(parameterBack), .parameter = 42},
    {.name = "Sink", .type = "Integer", .getter = nullptr, .setter = setter(setCount)},
};

// ---- methods

std::int64_t add(REALobject, std::int64_t one, std::int64_t other) {
    return one + other;
}
REALstring describeString(REALobject, REALstring what) {
    return makeString("string " + textOf(what));
}
REALstring describeInteger(REALobject, std::int64_t what) {
    return makeString("integer " + std::to_string(what));
}
REALstring describeWidget(REALobject, REALobject what) {
    return makeString(what == nullptr ? "nil" : "widget");
}

// Puts itself in place of the other and answers whether there was one.
bool replace(REALobject self, REALobject* other) {
    if (other == nullptr) {
        return false;
    }
    const bool was = *other != nullptr;
    if (was) {
        host<void>("REALUnlockObject", *other);
    }
    host<void>("REALLockObject", self);
    *other = self;
    return was;
}

void exclaim(REALobject, REALstring* text) {
    REALstring louder = makeString(textOf(*text) + "!");
    if (*text != nullptr) {
        host<void>("REALUnlockString", *text);
    }
    *text = louder;
}

void increase(REALobject, std::int64_t* number) {
    ++*number;
}

std::int32_t narrow(REALobject, std::int32_t one, std::uint32_t two, float three, bool four) {
    return one + static_cast<std::int32_t>(two) + static_cast<std::int32_t>(three) + (four ? 1000 : 0);
}

void raise(REALobject, REALstring className, REALstring message, std::int64_t number) {
    REALobject exception = host<REALobject>("PluginNewInstance", textOf(className).c_str());
    if (exception == nullptr) {
        return;
    }
    host<bool>("REALSetPropValueString", exception, "Message", message);
    host<bool>("REALSetPropValueInteger", exception, "ErrorNumber", number);
    host<void>("RuntimeRaiseException", exception);
    host<void>("REALUnlockObject", exception);
}

std::int64_t raiseTwice(REALobject self) {
    for (const char* name : {"OutOfBoundsException", "RuntimeException"}) {
        REALstring className = makeString(name);
        REALstring message = makeString(std::string("from ") + name);
        raise(self, className, message, 7);
        host<void>("REALUnlockString", className);
        host<void>("REALUnlockString", message);
    }
    return 99;
}

bool ping(REALobject self, REALstring text) {
    auto* handler = reinterpret_cast<EventFunction>(handlerOf(self, Pinged));
    if (handler == nullptr) {
        return false;
    }
    // Only the low byte of the Boolean counts.
    constexpr std::int64_t kFalseWithRubbish = 0x5500;
    host<void>("REALLockObject", self);
    handler(self, -3, 2.25, 0.5F, kFalseWithRubbish, -7, text, self);
    handler(self, 4, -1, 3, kFalseWithRubbish | 1, 8, nullptr, nullptr);
    host<void>("REALUnlockObject", self);
    return true;
}

void hidden(REALobject) {}

const MethodRecord widgetMethods[] = {
    {.function = method(constructor), .declaration = "Constructor"},
    {.function = method(titledConstructor), .declaration = "Constructor(title as string)"},
    {.function = method(destructor), .declaration = "Destructor"},
    {.function = method(add), .declaration = "Add(one as Integer, other as Integer = 10) as Integer"},
    {.function = method(describeString), .declaration = "Describe(what as String) as String"},
    {.function = method(describeInteger), .declaration = "Describe(what as Integer) as String"},
    {.function = method(describeWidget), .declaration = "Describe(what as Widget) as String"},
    {.function = method(replace), .declaration = "Replace(byref other as Widget) as Boolean"},
    {.function = method(exclaim), .declaration = "Exclaim(byref text as String)"},
    {.function = method(increase), .declaration = "Increase(byref number as Integer)"},
    {.function = method(narrow),
     .declaration = "Narrow(one as Int32, two as UInt32, three as Single, four as Boolean = true) as Int32"},
    {.function = method(raise),
     .declaration = "Raise(className as String, message as String, number as Integer = 0)"},
    {.function = method(raiseTwice), .declaration = "RaiseTwice() as Integer"},
    {.function = method(ping), .declaration = "Ping(text as String) as Boolean"},
    {.function = method(hidden), .declaration = "Hidden", .flags = kUnconstructibleFlags},
};

std::int64_t destroyedCount() {
    return destroyed;
}
REALobject make(REALstring title) {
    REALobject made = host<REALobject>("PluginNewInstance", "Widget");
    if (made != nullptr) {
        setTitle(made, title);
    }
    return made;
}

const MethodRecord widgetSharedMethods[] = {
    {.function = destroyedCount, .declaration = "Destroyed as Integer"},
    {.function = make, .declaration = "Make(title as String) as Widget"},
};

const ConstantRecord widgetConstants[] = {{.declaration = "Answer=42"}, {.declaration = "Motto=a=b"}};

template <typename Record, std::size_t size>
constexpr std::uint64_t countOf(Record (&)[size]) {
    return size;
}

ClassRecord widgetRecord{
    .version = 13,
    .name = "Widget",
    .dataSize = (sizeof(Widget) + 15) / 16 * 16,
    .constructor = construct,
    .destructor = destruct,
    .properties = widgetProperties,
    .propertyCount = countOf(widgetProperties),
    .methods = widgetMethods,
    .methodCount = countOf(widgetMethods),
    .events = widgetEvents,
    .eventCount = countOf(widgetEvents),
    .constants = widgetConstants,
    .constantCount = countOf(widgetConstants),
    .sharedMethods = widgetSharedMethods,
    .sharedMethodCount = countOf(widgetSharedMethods),
};

// ---- a class above it

REALstring describeGadget(REALobject, REALstring what) {
    return makeString("gadget " + textOf(what));
}
const MethodRecord gadgetMethods[] = {
    {.function = method(describeGadget), .declaration = "Describe(what as String) as String"},
};
ClassRecord gadgetRecord{
    .version = 13,
    .name = "Gadget",
    .superName = "Widget",
    .dataSize = 0,
    .constructor = nullptr,
    .destructor = nullptr,
    .methods = gadgetMethods,
    .methodCount = countOf(gadgetMethods),
};

} // namespace

extern "C" __attribute__((visibility("default"))) void REALPluginMain(REALresolver hostResolver);

void REALPluginMain(REALresolver hostResolver) {
    constexpr double kFirstWithDirectTokens = 2012.0;
    resolver = hostResolver;
    revision = host<double>("REALGetRBVersion") >= kFirstWithDirectTokens ? 13 : 9;
    host<void>("RegisterPluginVersion", revision);
    for (ClassRecord* record : {&widgetRecord, &gadgetRecord}) {
        record->version = static_cast<std::uint32_t>(revision);
        host<void>("PluginRegisterClass", static_cast<void*>(record));
    }
}
