#include "record_reader.h"

#include "event_tokens.h"
#include "text.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace zqm::host {

namespace {

constexpr std::uint64_t kInstanceDataUnit = 16;
constexpr std::uint32_t kIndirectTokenRevision = 9;

std::string numbered(const char* what, std::size_t index) {
    return what + (" " + std::to_string(index));
}

bool missing(const char* text) {
    return text == nullptr || *text == '\0';
}

} // namespace

RecordReader::RecordReader(ClassRecord& record, const HostClass* super, Reports& reports)
    : record_(&record), super_(super), reports_(&reports), where_("class " + inQuotes(record.name)) {}

void RecordReader::readInto(HostClass& type) {
    checkFixedParts();
    type.name = record_->name;
    type.super = super_;
    type.record = record_;
    const std::size_t inherited = super_ == nullptr ? 0 : super_->dataSize;
    type.dataSize = std::max(static_cast<std::size_t>(record_->dataSize), inherited);
    readProperties(type);
    readMethods("method", true, table("methods", record_->methods, record_->methodCount), type.methods);
    readEvents(type);
    readConstants(type);
    readMethods("shared method", false,
                table("shared methods", record_->sharedMethods, record_->sharedMethodCount),
                type.sharedMethods);
}

template <typename Record>
std::span<Record> RecordReader::table(const char* what, Record* records, std::uint64_t count) {
    if (records == nullptr && count != 0) {
        badRecord(std::to_string(count) + " " + what + " counted, but there is no table of them");
        return {};
    }
    if (records != nullptr && count == 0) {
        badRecord("a table of " + std::string(what) + ", but none counted");
    }
    if (!isAligned(records)) {
        badRecord("a table of " + std::string(what) + " at an address that is no multiple of 8");
        return {};
    }
    return {records, static_cast<std::size_t>(count)};
}

void RecordReader::checkFixedParts() {
    if (record_->dataSize % kInstanceDataUnit != 0) {
        badRecord("instance data of " + std::to_string(record_->dataSize) + " bytes, no multiple of 16");
    }
    if (record_->mFlags != kClassFlags) {
        badRecord("flags " + std::to_string(record_->mFlags));
    }
    if (record_->forSystemUse != 0) {
        badRecord("a word of the host's is in use");
    }
    if (record_->eventInstanceCount != 0 || record_->eventInstances != nullptr) {
        badRecord("event instances, which this host does not know");
    }
    if (record_->bindDescriptionCount != 0 || record_->bindDescriptions != nullptr) {
        badRecord("bind descriptions, which this host does not know");
    }
    if (record_->sharedPropertyCount != 0 || record_->sharedProperties != nullptr) {
        badRecord("shared properties, which this host does not know");
    }
    if (record_->interfaces != nullptr) {
        badRecord("interfaces, which this host does not know");
    }
    checkReserved("the record", record_->reserved);
}

void RecordReader::readProperties(HostClass& type) {
    std::size_t index = 0;
    for (const PropertyRecord& record : table("properties", record_->properties, record_->propertyCount)) {
        const std::string what = numbered("property", index++);
        if (missing(record.name)) {
            badRecord(what + " has no name");
            continue;
        }
        if (std::ranges::any_of(type.properties,
                                [&](const Property& one) { return sameName(one.name, record.name); })) {
            badRecord(what + " " + inQuotes(record.name) + " stands twice");
            continue;
        }
        if (record.flags != kPropertyFlags) {
            badRecord(what + " has flags " + std::to_string(record.flags));
        }
        if (record.getter.address() == nullptr && record.setter.address() == nullptr) {
            badRecord(what + " " + inQuotes(record.name) + " has neither getter nor setter");
            continue;
        }
        checkReserved(what, record.reserved);
        Property property;
        property.name = record.name;
        property.parameter = record.parameter;
        property.getter = record.getter.address();
        property.setter = record.setter.address();
        try {
            property.type = parseType(record.type == nullptr ? "" : record.type);
        } catch (const DeclarationError& error) {
            reports_->add(Report::Kind::BadDeclaration, where_ + ": type of " + what + ": " + error.what());
            continue;
        }
        addFunctionTypes(property);
        type.properties.push_back(std::move(property));
    }
}

void RecordReader::readMethods(const char* what, bool self, std::span<const MethodRecord> records,
                               std::vector<Method>& methods) {
    std::size_t index = 0;
    for (const MethodRecord& record : records) {
        const std::string member = numbered(what, index);
        Method method;
        if (!parse(what, index++, record.declaration, method.declaration)) {
            continue;
        }
        if (record.function.address() == nullptr) {
            badRecord(member + " " + inQuotes(record.declaration) + " has no function");
            continue;
        }
        const bool twice = std::ranges::any_of(methods, [&](const Method& one) {
            return sameName(one.declaration.name, method.declaration.name) &&
                   sameParameters(one.declaration, method.declaration);
        });
        if (twice) {
            badRecord(member + " " + inQuotes(record.declaration) + " stands twice");
            continue;
        }
        if (record.flags != kMethodFlags && record.flags != kUnconstructibleFlags) {
            badRecord(member + " has flags " + std::to_string(record.flags));
        }
        if (record.setter.address() != nullptr) {
            badRecord(member + " has a setter, which this host does not know");
        }
        checkReserved(member, record.reserved);
        method.function = record.function.address();
        method.callable = record.flags != kUnconstructibleFlags;
        method.type = std::make_unique<FunctionType>(self, method.declaration);
        methods.push_back(std::move(method));
    }
}

void RecordReader::readEvents(HostClass& type) {
    std::size_t index = 0;
    for (EventRecord& record : table("events", record_->events, record_->eventCount)) {
        const std::string what = numbered("event", index);
        Event event;
        if (!parse("event", index++, record.declaration, event.declaration)) {
            continue;
        }
        const bool twice = std::ranges::any_of(type.events, [&](const Event& one) {
            return sameName(one.declaration.name, event.declaration.name);
        });
        if (twice) {
            badRecord(what + " " + inQuotes(record.declaration) + " stands twice");
            continue;
        }
        if (event.declaration.result) {
            badRecord(what + " " + inQuotes(record.declaration) + " has a result");
            continue;
        }
        checkReserved(what, record.reserved);
        event.token = newEventToken();
        event.type = std::make_unique<FunctionType>(true, event.declaration);
        record.hostToken =
            record_->version == kIndirectTokenRevision ? indirectEventToken(event.token) : event.token;
        type.events.push_back(std::move(event));
    }
}

void RecordReader::readConstants(HostClass& type) {
    std::size_t index = 0;
    for (const ConstantRecord& record : table("constants", record_->constants, record_->constantCount)) {
        const std::string what = numbered("constant", index++);
        const std::string_view text = record.declaration == nullptr ? "" : record.declaration;
        const std::size_t sign = text.find('=');
        if (sign == std::string_view::npos || sign == 0 || sign + 1 == text.size()) {
            reports_->add(Report::Kind::BadDeclaration,
                          where_ + ": " + what + ": no name=value in " + inQuotes(text));
            continue;
        }
        Constant constant{std::string(text.substr(0, sign)), std::string(text.substr(sign + 1))};
        if (std::ranges::any_of(type.constants,
                                [&](const Constant& one) { return sameName(one.name, constant.name); })) {
            badRecord(what + " " + inQuotes(constant.name) + " stands twice");
            continue;
        }
        checkReserved(what, record.reserved);
        type.constants.push_back(std::move(constant));
    }
}

void RecordReader::badRecord(const std::string& what) {
    reports_->add(Report::Kind::BadRecord, where_ + ": " + what);
}

bool RecordReader::parse(const char* what, std::size_t index, const char* text, Declaration& declaration) {
    try {
        declaration = parseDeclaration(text == nullptr ? "" : text);
        return true;
    } catch (const DeclarationError& error) {
        reports_->add(Report::Kind::BadDeclaration,
                      where_ + ": " + numbered(what, index) + ": " + error.what());
        return false;
    }
}

template <std::size_t count>
void RecordReader::checkReserved(const std::string& member, const std::uint64_t (&words)[count]) {
    if (std::ranges::any_of(words, [](std::uint64_t word) { return word != 0; })) {
        badRecord("a reserved word of " + member + " is in use");
    }
}

} // namespace zqm::host
