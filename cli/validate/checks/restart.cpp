#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/host_reports.h"
#include "cli/validate/checks/objects.h"
#include "cli/validate/checks/observed_start.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace zqm::cli {
namespace {

// The records as they were when they were registered.
std::vector<ClassRecord> start(host::Runtime& runtime, PluginMain entryFunction) {
    std::vector<ClassRecord> records;
    startObserved(runtime, entryFunction, [&](void* record) {
        if (record != nullptr) {
            ClassRecord& copy = records.emplace_back();
            std::memcpy(static_cast<void*>(&copy), record, sizeof(copy));
        }
        return true;
    });
    return records;
}

void compare(const std::vector<ClassRecord>& first, const std::vector<ClassRecord>& second,
             Findings& findings) {
    if (second.empty()) {
        return; // it knows that it has been started
    }
    if (first.size() != second.size()) {
        findings.fail("it registered " + std::to_string(first.size()) + " classes, and then " +
                      std::to_string(second.size()));
        return;
    }
    for (std::size_t index = 0; index < first.size(); ++index) {
        const std::string where =
            "class \"" + std::string(first[index].name == nullptr ? "" : first[index].name) + "\": ";
        if (std::memcmp(&first[index], &second[index], sizeof(ClassRecord)) != 0) {
            findings.fail(where + "its record is another one when the plugin is started again");
        }
    }
}

// Their tables may be where they were, and have something else in them.
void compare(const std::vector<host::ClassDescription>& first,
             const std::vector<host::ClassDescription>& second, Findings& findings) {
    for (const host::ClassDescription& type : first) {
        if (std::ranges::find(second, type) == second.end()) {
            findings.fail("class \"" + type.name + "\": not the same in the next host");
        }
    }
}

// That a class is registered already is what hosts refuse.
void addReportsOfSecondCall(host::Runtime& runtime, Findings& findings) {
    for (const host::Report& report : runtime.reports()) {
        if (!report.text.ends_with(": registered already")) {
            addReport(report, findings);
        }
    }
    runtime.clearReports();
}

} // namespace

void checkRestart(const Subject& subject, Findings& findings) {
    const PluginMain entryFunction = entryFunctionOf(openPlugin(subject.library));
    std::vector<ClassRecord> first;
    std::vector<host::ClassDescription> described;
    {
        host::Runtime runtime;
        first = start(runtime, entryFunction);
        described = runtime.describeClasses();
        runtime.clearReports(); // another check's
        findings.at("the second call in the same host");
        compare(first, start(runtime, entryFunction), findings);
        addReportsOfSecondCall(runtime, findings);
        makeOneOfEach(runtime, findings);
        addReports(runtime, findings);
    }
    findings.at("the call in the next host");
    host::Runtime next;
    const std::vector<ClassRecord> again = start(next, entryFunction);
    compare(first, again, findings);
    if (!again.empty()) {
        compare(described, next.describeClasses(), findings);
    } else if (!first.empty()) {
        findings.warn("it registers nothing with a second host in the same process");
    }
    makeOneOfEach(next, findings);
    addReports(next, findings);
}

} // namespace zqm::cli
