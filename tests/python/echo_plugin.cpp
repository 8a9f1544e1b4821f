// A plugin that hands back what it is given, in every type that members can have, and raises events and
// exceptions on demand.

#include "plugin/host_interface.h"

#include <bit>
#include <cstdint>
#include <iterator>

namespace {

REALresolver resolver = nullptr;

template <typename Result, typename... Arguments>
Result host(const char* name, Arguments... arguments) {
    auto* function = reinterpret_cast<Result (*)(Arguments...)>(resolver(name));
    return function == nullptr ? Result() : function(arguments...);
}

struct Echo {
    REALobject kept;
    std::int64_t number;
};

Echo& dataOf(REALobject self) {
    return *reinterpret_cast<Echo*>(reinterpret_cast<char*>(self) + kInstanceDataOffset);
}

// ---- values

REALobject sameObject(REALobject, REALobject object) {
    if (object != nullptr) {
        host<void>("REALLockObject", object);
    }
    return object;
}

REALstring sameString(REALobject, REALstring string) {
    if (string != nullptr) {
        host<void>("REALLockString", string);
    }
    return string;
}

REALtext sameText(REALobject, REALtext text) {
    if (text != nullptr) {
        host<void>("PluginLockText", text);
    }
    return text;
}

void* samePointer(REALobject, void* pointer) {
    return pointer;
}

std::int64_t encodingOf(REALobject, REALstring string) {
    return host<std::uint32_t>("REALGetStringEncoding", string);
}

std::int64_t typeOf(REALobject, REALobject variant) {
    auto* varType = reinterpret_cast<std::int32_t (*)(REALobject)>(host<void*>(
        "REALLoadGlobalMethod", static_cast<const char*>(nullptr), "VarType(value As Variant) As Int32"));
    return varType(variant);
}

REALstring noString(REALobject) {
    return nullptr;
}

std::int64_t countStrings(REALobject, REALarray array) {
    return host<std::int64_t>("RuntimeUBound", array) + 1;
}
std::int64_t countIntegers(REALobject, REALarray array) {
    return 1000 + host<std::int64_t>("RuntimeUBound", array) + 1;
}

void makeVariant(REALobject, REALobject* value) {
    if (*value != nullptr) {
        host<void>("REALUnlockObject", *value);
    }
    *value = host<REALobject>("IntegerToVariant", std::int64_t{7});
}

std::int64_t negated(REALobject, std::int64_t number) {
    return -number;
}

// ---- objects

void keep(REALobject self, REALobject object) {
    if (object != nullptr) {
        host<void>("REALLockObject", object);
    }
    if (dataOf(self).kept != nullptr) {
        host<void>("REALUnlockObject", dataOf(self).kept);
    }
    dataOf(self).kept = object;
}

REALobject kept(REALobject self) {
    return sameObject(self, dataOf(self).kept);
}

void destruct(REALobject self) {
    keep(self, nullptr);
}

std::int64_t number(REALobject self, std::int64_t) {
    return dataOf(self).number;
}
void setNumber(REALobject self, std::int64_t, std::int64_t value) {
    dataOf(self).number = value;
}

// ---- exceptions

void raise(REALstring className, REALstring message, std::int64_t number) {
    REALobject exception =
        host<REALobject>("PluginNewInstance", host<const char*>("StringGetCString", className));
    host<bool>("REALSetPropValueString", exception, "Message", message);
    host<bool>("REALSetPropValueInteger", exception, "ErrorNumber", number);
    host<void>("RuntimeRaiseException", exception);
    host<void>("REALUnlockObject", exception);
}

std::int64_t exceptionCode(REALobject) {
    return 77;
}

// Its reference counts although it raises.
void makeSevenAndRaise(REALobject, REALobject* value) {
    makeVariant(nullptr, value);
    REALobject exception = host<REALobject>("PluginNewInstance", "EchoException");
    host<void>("RuntimeRaiseException", exception);
    host<void>("REALUnlockObject", exception);
}

// ---- events

EventRecord echoEvents[] = {
    {.declaration = "didFinishCounting(whole as Boolean)"},
    {.declaration = "Heard(what as Variant)"},
    {.declaration = "Ending"},
};

void* handlerOf(REALobject self, std::size_t event) {
    return host<void*>("GetEventInstance", self, echoEvents[event].hostToken);
}

bool startCounting(REALobject, std::int64_t to) {
    return to > 0;
}

void finishCounting(REALobject self, bool whole) {
    if (auto* handler = reinterpret_cast<void (*)(REALobject, bool)>(handlerOf(self, 0))) {
        host<void>("REALLockObject", self);
        handler(self, whole);
        host<void>("REALUnlockObject", self);
    }
}

bool tell(REALobject self, REALobject what) {
    auto* handler = reinterpret_cast<void (*)(REALobject, REALobject)>(handlerOf(self, 1));
    if (handler == nullptr) {
        return false;
    }
    host<void>("REALLockObject", self);
    handler(self, what);
    host<void>("REALUnlockObject", self);
    return true;
}

void destructor(REALobject self) {
    if (auto* handler = reinterpret_cast<void (*)(REALobject)>(handlerOf(self, 2))) {
        handler(self);
    }
}

// ---- records

template <typename Function>
MethodFunction method(Function function) {
    return std::bit_cast<void (*)(REALobject)>(function);
}

const MethodRecord echoMethods[] = {
    {.function = method(destructor), .declaration = "Destructor"},
    {.function = method(sameObject), .declaration = "Back(value as Variant) as Variant"},
    {.function = method(sameObject), .declaration = "Strings(values() as String) as String()"},
    {.function = method(sameObject), .declaration = "Numbers(values() as Double) as Double()"},
    {.function = method(sameObject), .declaration = "Variants(values() as Variant) as Variant()"},
    {.function = method(sameObject), .declaration = "Block(block as MemoryBlock) as MemoryBlock"},
    {.function = method(sameObject), .declaration = "Item(item as FolderItem) as FolderItem"},
    {.function = method(sameObject), .declaration = "Day(day as Date) as Date"},
    {.function = method(sameObject), .declaration = "Table(table as Dictionary) as Dictionary"},
    {.function = method(sameString), .declaration = "Text8(text as String) as String"},
    {.function = method(sameText), .declaration = "Words(text as Text) as Text"},
    {.function = method(samePointer), .declaration = "Address(pointer as Ptr) as Ptr"},
    {.function = method(encodingOf), .declaration = "Encoding(text as String) as Integer"},
    {.function = method(typeOf), .declaration = "Kind(value as Variant) as Integer"},
    {.function = method(noString), .declaration = "Nothing as String"},
    {.function = method(countStrings), .declaration = "Count(values() as String) as Integer"},
    {.function = method(countStrings), .declaration = "Measure(values() as String) as Integer"},
    {.function = method(countIntegers), .declaration = "Measure(values() as Integer) as Integer"},
    {.function = method(makeVariant), .declaration = "MakeSeven(byref value as Variant)"},
    {.function = method(makeSevenAndRaise), .declaration = "MakeSevenAndRaise(byref value as Variant)"},
    {.function = method(negated), .declaration = "from(import as Integer = 5) as Integer"},
    {.function = method(keep), .declaration = "Keep(object as Echo)"},
    {.function = method(kept), .declaration = "Kept as Echo"},
    {.function = method(startCounting), .declaration = "startCounting(to as Integer) as Boolean"},
    {.function = method(finishCounting), .declaration = "FinishCounting(whole as Boolean)"},
    {.function = method(tell), .declaration = "Tell(what as Variant) as Boolean"},
};

const MethodRecord echoSharedMethods[] = {
    {.function = method(raise),
     .declaration = "Raise(className as String, message as String, number as Integer)"},
};

const PropertyRecord echoProperties[] = {
    {.name = "Number", .type = "Integer", .getter = number, .setter = setNumber},
};

const ConstantRecord echoConstants[] = {
    {.declaration = "Whole=3"},        {.declaration = "Real=2.5"},  {.declaration = "Flag=true"},
    {.declaration = "Quoted=\"a b\""}, {.declaration = "Plain=a=b"},
};

ClassRecord echoRecord{
    .version = 13,
    .name = "Echo",
    .dataSize = sizeof(Echo),
    .constructor = nullptr,
    .destructor = destruct,
    .properties = echoProperties,
    .propertyCount = std::size(echoProperties),
    .methods = echoMethods,
    .methodCount = std::size(echoMethods),
    .events = echoEvents,
    .eventCount = std::size(echoEvents),
    .constants = echoConstants,
    .constantCount = std::size(echoConstants),
    .sharedMethods = echoSharedMethods,
    .sharedMethodCount = std::size(echoSharedMethods),
};

const MethodRecord exceptionMethods[] = {
    {.function = method(exceptionCode), .declaration = "Code as Integer"},
};

ClassRecord exceptionRecord{
    .version = 13,
    .name = "EchoException",
    .superName = "RuntimeException",
    .dataSize = 0,
    .constructor = nullptr,
    .destructor = nullptr,
    .methods = exceptionMethods,
    .methodCount = std::size(exceptionMethods),
};

} // namespace

extern "C" __attribute__((visibility("default"))) void REALPluginMain(REALresolver hostResolver);

void REALPluginMain(REALresolver hostResolver) {
    resolver = hostResolver;
    host<void>("RegisterPluginVersion", std::int32_t{13});
    for (ClassRecord* record : {&echoRecord, &exceptionRecord}) {
        host<void>("PluginRegisterClass", static_cast<void*>(record));
    }
}
