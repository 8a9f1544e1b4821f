#include "cli/validate/checks/host_reports.h"

namespace zqm::cli {

void addReport(const host::Report& report, Findings& findings) {
    findings.fail(std::string(host::nameOf(report.kind)) + ": " + report.text);
}

void addReports(host::Runtime& runtime, Findings& findings) {
    for (const host::Report& report : runtime.reports()) {
        addReport(report, findings);
    }
    runtime.clearReports();
}

} // namespace zqm::cli
