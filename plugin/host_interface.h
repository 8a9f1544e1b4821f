// The host's plugin interface in C: the handles, the records that a plugin hands over at registration,
// and, by way of entry_points.def, the C types of what the host offers. Plugin and host meet only here;
// should a host differ, this is the one place to change.
//
// Contract common to all of it
// - 64-bit little-endian, System V AMD64 calling convention.
// - Everything is called on the host's main thread.
// - A function that returns a handle returns it with one lock that the receiver owns; arguments are
//   borrowed; a handle written to an out argument carries one lock. Class references and function
//   pointers carry none.
// - Null is nil, the absent object or the empty string. False, null or 0 is the answer on failure.
// - Host "Integer" is int64_t, "Boolean" one byte (0 or 1), "Double" double, "Single" float, "Int32"
//   int32_t, "Ptr" void*; "byref X" is a pointer to the caller's X.
// - Names, declarations and class names are NUL-terminated 8-bit text.

#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

struct REALobjectStruct;
struct REALstringStruct;
struct REALtextStruct;
struct REALarrayStruct;
struct REALclassStruct;

using REALobject = REALobjectStruct*;  // any host object, Variants included
using REALstring = REALstringStruct*;  // bytes with a CoreFoundation encoding number
using REALtext = REALtextStruct*;      // immutable Unicode text
using REALarray = REALarrayStruct*;    // one-dimensional array
using REALclassRef = REALclassStruct*; // a host class; never locked

// Answers the address of the entry point of that name, or null.
using REALresolver = void* (*)(const char* name);

// The encoding number of a string without encoding. All other numbers are CoreFoundation's, whose own number
// for this, kCFStringEncodingInvalidId, is wider.
inline constexpr std::uint32_t kEncodingNone = 0xFFFF;

// What "PluginGetStringData" fills in and "PluginDisposeStringData" releases. The data need not end in
// a NUL.
struct REALstringData {
    std::uint32_t encoding;
    std::uint32_t reserved;
    const char* data;
    std::int64_t length; // bytes
    void* owner;
};
static_assert(sizeof(REALstringData) == 32);
static_assert(offsetof(REALstringData, data) == 8);
static_assert(offsetof(REALstringData, length) == 16);
static_assert(offsetof(REALstringData, owner) == 24);

// A host object is one block: a header that belongs to the host, then the instance data of its class.
inline constexpr std::size_t kInstanceDataOffset = 48;

// In an array object the word at this offset points to the first element, the elements contiguous in
// their natural size, under hosts older than version 2016.0; newer hosts leave it null.
inline constexpr std::size_t kArrayDirectDataOffset = 56;

// Element types of "RuntimeArrayCreateSingleDimBoundedArray".
inline constexpr std::int32_t kArrayElementString = 3;
inline constexpr std::int32_t kArrayElementObject = 4;

// A pointer to a function of one of the listed types, in one word. Unlike a cast to void* it can be
// filled in at compile time, so tables of it are constants.
template <typename First, typename... Rest>
union OneFunctionOf {
    // The function that it is to hold, and its address.
    constexpr OneFunctionOf(First function) : first(function) {}
    template <typename Function>
    constexpr OneFunctionOf(Function function) : rest(function) {}
    void* address() const { return std::bit_cast<void*>(*this); }

    First first;
    OneFunctionOf<Rest...> rest;
};
template <typename Only>
union OneFunctionOf<Only> {
    // The same for the last type.
    constexpr OneFunctionOf(Only function) : only(function) {}
    void* address() const { return std::bit_cast<void*>(*this); }

    Only only;
};

// The function of a method: the object first (not for shared methods), then the arguments in the order of
// the declaration. The list holds the signatures of the family's members; another joins it with its first
// member.
using MethodFunction = OneFunctionOf<
    std::nullptr_t,
    // instance methods
    void (*)(REALobject), void (*)(REALobject, std::int64_t), void (*)(REALobject, REALstring),
    void (*)(REALobject, REALobject), void (*)(REALobject, REALarray), bool (*)(REALobject, REALstring),
    bool (*)(REALobject, REALstring, REALstring), bool (*)(REALobject, REALstring, REALobject),
    bool (*)(REALobject, REALobject, REALstring, REALobject*), std::int64_t (*)(REALobject),
    REALstring (*)(REALobject), REALstring (*)(REALobject, REALstring), REALobject (*)(REALobject),
    REALobject (*)(REALobject, REALstring, REALobject*), REALarray (*)(REALobject),
    // shared methods
    bool (*)(), std::int64_t (*)(), REALstring (*)(), REALstring (*)(std::int64_t),
    REALobject (*)(REALstring), REALarray (*)()>;

// The record's parameter word comes as the second argument of both.
using GetterFunction =
    OneFunctionOf<std::nullptr_t, double (*)(REALobject, std::int64_t), bool (*)(REALobject, std::int64_t),
                  REALstring (*)(REALobject, std::int64_t), std::int64_t (*)(REALobject, std::int64_t)>;
using SetterFunction =
    OneFunctionOf<std::nullptr_t, void (*)(REALobject, std::int64_t, double),
                  void (*)(REALobject, std::int64_t, bool), void (*)(REALobject, std::int64_t, signed char),
                  void (*)(REALobject, std::int64_t, REALstring),
                  void (*)(REALobject, std::int64_t, std::int64_t)>;

static_assert(sizeof(MethodFunction) == 8);
static_assert(sizeof(GetterFunction) == 8);
static_assert(sizeof(SetterFunction) == 8);

inline constexpr std::uint64_t kPropertyFlags = 6;
inline constexpr std::uint64_t kMethodFlags = 4;
inline constexpr std::uint64_t kUnconstructibleFlags = 132; // kMethodFlags, and host code can't call it
inline constexpr std::uint64_t kClassFlags = 4;

// A property of a class, or one that its objects share.
struct PropertyRecord {
    const char* group = nullptr;
    const char* name;
    const char* type; // host type name
    std::uint64_t flags = kPropertyFlags;
    GetterFunction getter;
    SetterFunction setter = nullptr; // null: read-only
    std::int64_t parameter = 0;      // handed back to getter and setter
    std::uint64_t reserved[5] = {};
};
static_assert(sizeof(PropertyRecord) == 96);
static_assert(offsetof(PropertyRecord, group) == 0);
static_assert(offsetof(PropertyRecord, name) == 8);
static_assert(offsetof(PropertyRecord, type) == 16);
static_assert(offsetof(PropertyRecord, flags) == 24);
static_assert(offsetof(PropertyRecord, getter) == 32);
static_assert(offsetof(PropertyRecord, setter) == 40);
static_assert(offsetof(PropertyRecord, parameter) == 48);
static_assert(offsetof(PropertyRecord, reserved) == 56);

// A method of a class, or one that its objects share.
struct MethodRecord {
    MethodFunction function;
    MethodFunction setter = nullptr;
    const char* declaration; // signature in host syntax
    std::uint64_t flags = kMethodFlags;
    std::uint64_t reserved[2] = {};
};
static_assert(sizeof(MethodRecord) == 48);
static_assert(offsetof(MethodRecord, function) == 0);
static_assert(offsetof(MethodRecord, setter) == 8);
static_assert(offsetof(MethodRecord, declaration) == 16);
static_assert(offsetof(MethodRecord, flags) == 24);
static_assert(offsetof(MethodRecord, reserved) == 32);

// The host writes to word 1 at registration: the event's token, or, to a class of revision 9, the address
// of a record of its own whose word 1 is the token. So these records are never constants.
struct EventRecord {
    const char* declaration;
    std::uint64_t hostToken = 0;
    std::uint64_t reserved[2] = {};
};
static_assert(sizeof(EventRecord) == 32);
static_assert(offsetof(EventRecord, declaration) == 0);
static_assert(offsetof(EventRecord, hostToken) == 8);
static_assert(offsetof(EventRecord, reserved) == 16);

// A constant of a class.
struct ConstantRecord {
    const char* declaration; // "name=value"
    std::uint64_t reserved[4] = {};
};
static_assert(sizeof(ConstantRecord) == 40);
static_assert(offsetof(ConstantRecord, declaration) == 0);
static_assert(offsetof(ConstantRecord, reserved) == 8);

// Handed to "PluginRegisterClass". The host keeps the pointer for the life of the process and writes to
// the event records; the plugin writes `version` and `dataSize` before it registers the record.
struct ClassRecord {
    std::uint32_t version;
    std::uint32_t padding = 0;
    const char* name;
    const char* superName = nullptr;
    std::uint64_t dataSize; // bytes of instance data
    std::uint64_t forSystemUse = 0;
    void (*constructor)(REALobject);
    void (*destructor)(REALobject);
    const PropertyRecord* properties = nullptr;
    std::uint64_t propertyCount = 0;
    const MethodRecord* methods = nullptr;
    std::uint64_t methodCount = 0;
    EventRecord* events = nullptr;
    std::uint64_t eventCount = 0;
    const void* eventInstances = nullptr;
    std::uint64_t eventInstanceCount = 0;
    const char* interfaces = nullptr;
    const void* bindDescriptions = nullptr;
    std::uint64_t bindDescriptionCount = 0;
    const ConstantRecord* constants = nullptr;
    std::uint64_t constantCount = 0;
    std::uint64_t mFlags = kClassFlags;
    const PropertyRecord* sharedProperties = nullptr;
    std::uint64_t sharedPropertyCount = 0;
    const MethodRecord* sharedMethods = nullptr;
    std::uint64_t sharedMethodCount = 0;
    std::uint64_t reserved[4] = {};
};
static_assert(sizeof(ClassRecord) == 232);
static_assert(offsetof(ClassRecord, version) == 0);
static_assert(offsetof(ClassRecord, name) == 8);
static_assert(offsetof(ClassRecord, superName) == 16);
static_assert(offsetof(ClassRecord, dataSize) == 24);
static_assert(offsetof(ClassRecord, forSystemUse) == 32);
static_assert(offsetof(ClassRecord, constructor) == 40);
static_assert(offsetof(ClassRecord, destructor) == 48);
static_assert(offsetof(ClassRecord, properties) == 56);
static_assert(offsetof(ClassRecord, propertyCount) == 64);
static_assert(offsetof(ClassRecord, methods) == 72);
static_assert(offsetof(ClassRecord, methodCount) == 80);
static_assert(offsetof(ClassRecord, events) == 88);
static_assert(offsetof(ClassRecord, eventCount) == 96);
static_assert(offsetof(ClassRecord, eventInstances) == 104);
static_assert(offsetof(ClassRecord, eventInstanceCount) == 112);
static_assert(offsetof(ClassRecord, interfaces) == 120);
static_assert(offsetof(ClassRecord, bindDescriptions) == 128);
static_assert(offsetof(ClassRecord, bindDescriptionCount) == 136);
static_assert(offsetof(ClassRecord, constants) == 144);
static_assert(offsetof(ClassRecord, constantCount) == 152);
static_assert(offsetof(ClassRecord, mFlags) == 160);
static_assert(offsetof(ClassRecord, sharedProperties) == 168);
static_assert(offsetof(ClassRecord, sharedPropertyCount) == 176);
static_assert(offsetof(ClassRecord, sharedMethods) == 184);
static_assert(offsetof(ClassRecord, sharedMethodCount) == 192);
static_assert(offsetof(ClassRecord, reserved) == 200);
