#include "cli/validate/checks/objects.h"

namespace zqm::cli {

void makeOneOfEach(host::Runtime& runtime, Findings& findings) {
    for (const std::string& name : runtime.classNames()) {
        findings.at("a new " + name);
        runtime.create(name).reset();
    }
    findings.at("");
}

} // namespace zqm::cli
