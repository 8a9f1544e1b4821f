#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/host_reports.h"
#include "cli/validate/checks/objects.h"
#include "cli/validate/checks/observed_start.h"

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

} // namespace

void checkRestart(const Subject& subject, Findings& findings) {
    const PluginMain entryFunction = entryFunctionOf(openPlugin(subject.library));
    std::vector<ClassRecord> first;
    {
        host::Runtime runtime;
        first = start(runtime, entryFunction);
        runtime.clearReports(); // another check's
        findings.at("the second call in the same host");
        compare(first, start(runtime, entryFunction), findings);
        // That a class is registered already is what hosts refuse.
        runtime.clearReports();
        makeOneOfEach(runtime, findings);
        addReports(runtime, findings);
    }
    findings.at("the call in the next host");
    host::Runtime next;
    const std::vector<ClassRecord> again = start(next, entryFunction);
    compare(first, again, findings);
    if (again.empty() && !first.empty()) {
        findings.warn("it registers nothing with a second host in the same process");
    }
    next.clearReports();
    makeOneOfEach(next, findings);
    addReports(next, findings);
}

} // namespace zqm::cli
