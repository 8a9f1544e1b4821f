#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/host_reports.h"
#include "cli/validate/checks/member_names.h"
#include "cli/validate/checks/observed_start.h"
#include "cli/validate/checks/record_inspection.h"

namespace zqm::cli {

void checkRecords(const Subject& subject, Findings& findings) {
    const PluginMain entryFunction = entryFunctionOf(openPlugin(subject.library));
    RecordInspection inspection(findings);
    host::Runtime runtime;
    startObserved(runtime, entryFunction, [&](void* record) { return inspection.isReadable(record); });
    findings.at("");
    addReports(runtime, findings);
    for (const host::ClassDescription& type : runtime.describeClasses()) {
        checkMemberNames(type, findings);
    }
}

} // namespace zqm::cli
