#include "cli/validate/checks/record_inspection.h"

#include "cli/validate/checks/executable_memory.h"

#include <utility>

namespace zqm::cli {
namespace {

// Of the members of one kind. Nothing that people could use has as many.
constexpr std::uint64_t kMostMembers = 10000;

bool isAligned(const void* record) {
    return reinterpret_cast<std::uintptr_t>(record) % alignof(ClassRecord) == 0;
}

} // namespace

bool RecordInspection::isReadable(void* record) {
    at("class record " + std::to_string(++number_));
    // The host tells of these, and reads no further.
    if (record == nullptr || !isAligned(record)) {
        return true;
    }
    if (probe_.readable(record, sizeof(ClassRecord)) < sizeof(ClassRecord)) {
        fail("it can't be read");
        return false;
    }
    const ClassRecord& type = *static_cast<const ClassRecord*>(record);
    if (!isText("its name", type.name)) {
        return false;
    }
    if (type.name == nullptr || *type.name == '\0') {
        return true;
    }
    at(std::string("class \"") + type.name + '"');
    // All of them, so that each is told.
    bool isGood = isText("its superclass", type.superName);
    isGood &= isCode("its constructor", reinterpret_cast<const void*>(type.constructor));
    isGood &= isCode("its destructor", reinterpret_cast<const void*>(type.destructor));
    isGood &= isTable("property", type.properties, type.propertyCount);
    isGood &= isTable("shared property", type.sharedProperties, type.sharedPropertyCount);
    isGood &= isTable("method", type.methods, type.methodCount);
    isGood &= isTable("shared method", type.sharedMethods, type.sharedMethodCount);
    isGood &= isTable("event", type.events, type.eventCount);
    isGood &= isTable("constant", type.constants, type.constantCount);
    return isGood;
}

void RecordInspection::fail(const std::string& what) {
    if (findings_ != nullptr) {
        findings_->fail(where_ + ": " + what);
    }
}

void RecordInspection::at(const std::string& where) {
    where_ = where;
    if (findings_ != nullptr) {
        findings_->at(where);
    }
}

// A null one is the host's to judge.
bool RecordInspection::isText(const std::string& what, const char* text) {
    if (text != nullptr && !probe_.text(text)) {
        fail(what + " can't be read");
        return false;
    }
    return true;
}

bool RecordInspection::isCode(const std::string& what, const void* function) {
    if (function == nullptr) {
        return true;
    }
    const auto executable = isExecutable(function);
    if (!executable) {
        warnOfCode();
    } else if (!*executable) {
        fail(what + " is no function");
    }
    return executable.value_or(true);
}

void RecordInspection::warnOfCode() {
    if (!std::exchange(hasWarnedOfCode_, true) && findings_ != nullptr) {
        findings_->warn("this system doesn't tell which addresses are functions");
    }
}

template <typename Record>
bool RecordInspection::isTable(const char* what, Record* records, std::uint64_t count) {
    if (records == nullptr || count == 0 || !isAligned(records)) {
        return true; // the host tells what is wrong there
    }
    const std::string counted = std::string(what) + ": " + std::to_string(count) + " counted";
    if (count > kMostMembers) {
        fail(counted + ", more than any class has");
        return false;
    }
    const std::size_t size = sizeof(Record) * static_cast<std::size_t>(count);
    const std::size_t readable = probe_.readable(records, size);
    if (readable < size) {
        fail(counted + ", but only " + std::to_string(readable / sizeof(Record)) + " can be read");
        return false;
    }
    bool isGood = true;
    for (std::size_t index = 0; index < count; ++index) {
        isGood &= isMember(std::string(what) + ' ' + std::to_string(index), records[index]);
    }
    return isGood;
}

bool RecordInspection::isMember(const std::string& what, const PropertyRecord& record) {
    bool isGood = isText(what + "'s name", record.name);
    isGood &= isText(what + "'s type", record.type);
    isGood &= isCode(what + "'s getter", record.getter.address());
    isGood &= isCode(what + "'s setter", record.setter.address());
    return isGood;
}

bool RecordInspection::isMember(const std::string& what, const MethodRecord& record) {
    bool isGood = isText(what + "'s declaration", record.declaration);
    isGood &= isCode(what + "'s function", record.function.address());
    return isGood;
}

bool RecordInspection::isMember(const std::string& what, EventRecord& record) {
    if (!probe_.isWritable(&record, sizeof(record))) {
        fail(what + " can't be written to, as hosts do");
        return false;
    }
    return isText(what + "'s declaration", record.declaration);
}

bool RecordInspection::isMember(const std::string& what, const ConstantRecord& record) {
    return isText(what + "'s declaration", record.declaration);
}

} // namespace zqm::cli
