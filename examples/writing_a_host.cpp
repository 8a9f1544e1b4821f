// A host in one file: what a program does that uses a plugin without the host library. It speaks a text into
// a sound file, and prints each word as it is written.
//
//     writing_a_host PLUGIN URL TEXT

#include "plugin/host_interface.h"

#include <CoreFoundation/CoreFoundation.h>

#include <cstring>
#include <iostream>
#include <map>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <dlfcn.h>

// ---- values. What the handles point to is the host's own business.

struct REALstringStruct {
    int locks;
    std::uint32_t encoding;
    std::string bytes;
};

// The header of every object; the instance data of its class follows it in the same block.
struct REALobjectStruct {
    const ClassRecord* type;
    std::int64_t locks;
    std::uint64_t unused[4];
};
static_assert(sizeof(REALobjectStruct) == kInstanceDataOffset);

namespace {

std::vector<ClassRecord*> classes;
std::map<std::pair<REALobject, std::uint64_t>, void*> handlers; // by object and token of the event

template <typename Function>
Function functionOf(const ClassRecord& type, std::string_view declaration) {
    for (std::uint64_t index = 0; index < type.methodCount; ++index) {
        const MethodRecord& method = type.methods[index];
        if (declaration == method.declaration) {
            return reinterpret_cast<Function>(method.function.address());
        }
    }
    throw std::runtime_error("there is no method " + std::string(declaration));
}

// ---- services, which the plugin asks for by name

double version() {
    return 2023.02;
}

void registerRevision(std::int32_t /*revision*/) {} // of the records: 13 for this version

// The plugin asks for handlers by the tokens that are written here.
void registerClass(void* record) {
    auto* const type = static_cast<ClassRecord*>(record);
    classes.push_back(type);
    for (std::uint64_t index = 0; index < type->eventCount; ++index) {
        type->events[index].hostToken = index + 1;
    }
}

REALstring buildString(const char* bytes, std::int32_t length) {
    return new REALstringStruct{1, kEncodingNone, std::string(bytes, static_cast<std::size_t>(length))};
}

std::uint32_t encodingOf(REALstring string) {
    return string->encoding;
}

void setEncoding(REALstring string, std::uint32_t encoding) {
    string->encoding = encoding;
}

CFStringRef platformString(REALstring string, std::uint32_t /*options*/) {
    const auto* const bytes = reinterpret_cast<const UInt8*>(string->bytes.data());
    return CFStringCreateWithBytes(nullptr, bytes, static_cast<CFIndex>(string->bytes.size()),
                                   string->encoding, false);
}

void lockString(REALstring string) {
    ++string->locks;
}

void unlockString(REALstring string) {
    if (--string->locks == 0) {
        delete string;
    }
}

void lockObject(REALobject object) {
    ++object->locks;
}

// The last lock ends the object: first its method "Destructor", then the destructor of its class.
void unlockObject(REALobject object) {
    if (--object->locks > 0) {
        return;
    }
    functionOf<void (*)(REALobject)>(*object->type, "Destructor")(object);
    object->type->destructor(object);
    ::operator delete(object);
}

void* handlerOf(REALobject object, std::uint64_t event) {
    const auto handler = handlers.find({object, event});
    return handler != handlers.end() ? handler->second : nullptr;
}

struct Service {
    const char* name;
    void* function;
};

template <typename Function>
Service service(const char* name, Function* function) {
    return {name, reinterpret_cast<void*>(function)};
}

void* resolve(const char* name) {
    static const Service services[] = {
        service("REALGetRBVersion", version),
        service("RegisterPluginVersion", registerRevision),
        service("PluginRegisterClass", registerClass),
        service("REALBuildString", buildString),
        service("REALGetStringEncoding", encodingOf),
        service("REALSetStringEncoding", setEncoding),
        service("REALGetStringCFString", platformString),
        service("REALLockString", lockString),
        service("REALUnlockString", unlockString),
        service("REALLockObject", lockObject),
        service("REALUnlockObject", unlockObject),
        service("GetEventInstance", handlerOf),
    };
    for (const Service& each : services) {
        if (std::strcmp(each.name, name) == 0) {
            return each.function;
        }
    }
    return nullptr; // what needs it does nothing
}

// ---- what host code would do

void load(const char* plugin) {
    void* const library = dlopen(plugin, RTLD_NOW);
    void* const main = library != nullptr ? dlsym(library, "REALPluginMain") : nullptr;
    if (main == nullptr) {
        throw std::runtime_error(dlerror());
    }
    reinterpret_cast<void (*)(REALresolver)>(main)(resolve);
}

REALobject newObject(std::string_view className) {
    for (const ClassRecord* type : classes) {
        if (className == type->name) {
            const std::size_t size = kInstanceDataOffset + type->dataSize;
            auto* const object = static_cast<REALobject>(std::memset(::operator new(size), 0, size));
            object->type = type;
            object->locks = 1;
            type->constructor(object);
            return object;
        }
    }
    throw std::runtime_error("there is no class " + std::string(className));
}

template <typename... Arguments>
void handle(REALobject object, std::string_view event, void (*handler)(REALobject, Arguments...)) {
    for (std::uint64_t index = 0; index < object->type->eventCount; ++index) {
        const EventRecord& record = object->type->events[index];
        if (event == record.declaration) {
            handlers[{object, record.hostToken}] = reinterpret_cast<void*>(handler);
            return;
        }
    }
    throw std::runtime_error("there is no event " + std::string(event));
}

REALstring newString(std::string_view utf8) {
    return new REALstringStruct{1, kCFStringEncodingUTF8, std::string(utf8)};
}

// Positions count UTF-16 units.
void printWord(REALobject /*speaker*/, std::int64_t position, std::int64_t length, REALstring text) {
    const CFStringRef whole = platformString(text, 0);
    std::string word(static_cast<std::size_t>(length) * 3, '\0'); // of UTF-8 a unit takes three bytes at most
    CFIndex used = 0;
    CFStringGetBytes(whole, CFRangeMake(position, length), kCFStringEncodingUTF8, 0, false,
                     reinterpret_cast<UInt8*>(word.data()), static_cast<CFIndex>(word.size()), &used);
    CFRelease(whole);
    std::cout << word.substr(0, static_cast<std::size_t>(used)) << std::endl;
}

bool isOver = false;
bool isWhole = false;

void noteEnd(REALobject /*speaker*/, std::int64_t finished) {
    isOver = true;
    isWhole = (finished & 0xFF) != 0; // a Boolean is one byte
}

void speak(const char* url, const char* text) {
    const REALobject speaker = newObject("NSSpeechSynthesizerZQM");
    functionOf<void (*)(REALobject)>(*speaker->type, "Constructor")(speaker);
    handle(speaker, "willSpeakWord(Position as integer, Length as integer, Text as String)", printWord);
    handle(speaker, "didFinishSpeaking(finishedSpeaking as boolean)", noteEnd);

    const REALstring textString = newString(text);
    const REALstring urlString = newString(url);
    const auto start = functionOf<bool (*)(REALobject, REALstring, REALstring)>(
        *speaker->type, "startSpeakingString(Text as String, URL as string) as boolean");
    const bool started = start(speaker, textString, urlString);
    unlockString(textString);
    unlockString(urlString);

    while (started && !isOver) {
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, 1, true); // events come from in here
    }
    unlockObject(speaker);
    if (!started || !isWhole) {
        throw std::runtime_error("the text can't be spoken into " + std::string(url));
    }
}

} // namespace

int main(int argc, char** argv) try {
    if (argc != 4) {
        throw std::runtime_error("usage: writing_a_host PLUGIN URL TEXT");
    }
    load(argv[1]);
    speak(argv[2], argv[3]);
    return 0;
} catch (const std::exception& error) {
    std::cerr << "writing_a_host: " << error.what() << '\n';
    return 1;
}
