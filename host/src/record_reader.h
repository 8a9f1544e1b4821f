// Reads a plugin's class record, reporting everything in it that is wrong.

#pragma once

#include "host_class.h"
#include "plugin/host_interface.h"
#include "reports.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace zqm::host {

// Whether a record, or a table of them, is where it can be read.
inline bool isAligned(const void* record) {
    return reinterpret_cast<std::uintptr_t>(record) % alignof(ClassRecord) == 0;
}

class RecordReader {
public:
    // The record's name is not null; super may be.
    RecordReader(ClassRecord& record, const HostClass* super, Reports& reports);

    void readInto(HostClass& type);

private:
    template <typename Record>
    std::span<Record> table(const char* what, Record* records, std::uint64_t count);
    void checkFixedParts();
    void readProperties(HostClass& type);
    void readMethods(const char* what, bool self, std::span<const MethodRecord> records,
                     std::vector<Method>& methods);
    void readEvents(HostClass& type);
    void readConstants(HostClass& type);
    void badRecord(const std::string& what);
    bool parse(const char* what, std::size_t index, const char* text, Declaration& declaration);
    template <std::size_t count>
    void checkReserved(const std::string& member, const std::uint64_t (&words)[count]);

    ClassRecord* record_;
    const HostClass* super_;
    Reports* reports_;
    std::string where_;
};

} // namespace zqm::host
