// What a host can't look at without a crash: where a class record points to.

#pragma once

#include "cli/validate/checks/memory_probe.h"
#include "cli/validate/findings.h"
#include "plugin/host_interface.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace zqm::cli {

class RecordInspection {
public:
    RecordInspection() = default; // tells nobody what it finds
    explicit RecordInspection(Findings& findings) : findings_(&findings) {}

    // Whether the host can read all of the record, and write what it has to write.
    bool isReadable(void* record);

private:
    void fail(const std::string& what);
    bool isText(const std::string& what, const char* text);
    bool isCode(const std::string& what, const void* function);
    void warnOfCode();
    template <typename Record>
    bool isTable(const char* what, Record* records, std::uint64_t count);
    bool isMember(const std::string& what, const PropertyRecord& record);
    bool isMember(const std::string& what, const MethodRecord& record);
    bool isMember(const std::string& what, EventRecord& record);
    bool isMember(const std::string& what, const ConstantRecord& record);

    void at(const std::string& where);

    Findings* findings_ = nullptr;
    MemoryProbe probe_;
    std::size_t number_ = 0; // of the record, from 1
    std::string where_;
    bool hasWarnedOfCode_ = false;
};

} // namespace zqm::cli
