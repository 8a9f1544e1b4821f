#include "cli/validate/checks/host_reports.h"

namespace zqm::cli {

void addReports(host::Runtime& runtime, Findings& findings) {
    for (const host::Report& report : runtime.reports()) {
        findings.fail(std::string(host::nameOf(report.kind)) + ": " + report.text);
    }
    runtime.clearReports();
}

} // namespace zqm::cli
