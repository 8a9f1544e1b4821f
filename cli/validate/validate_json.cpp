#include "cli/validate/validate_json.h"

#include "cli/text/json_line.h"

namespace zqm::cli {
namespace {

Json jsonOf(const CheckResult& result) {
    Json findings = Json::array();
    for (const Finding& finding : result.findings) {
        findings.push_back({{"verdict", nameOf(finding.verdict)}, {"text", finding.text}});
    }
    return {{"check", result.check},
            {"verdict", nameOf(result.verdict)},
            {"findings", findings},
            {"seconds", rounded(result.duration.count())},
            {"output", result.output}};
}

} // namespace

std::string validationJson(const Validation& validation) {
    Json results = Json::array();
    for (const CheckResult& result : validation.results) {
        results.push_back(jsonOf(result));
    }
    const Json document{{"library", validation.library},
                        {"seed", validation.seed},
                        {"verdict", nameOf(verdictOf(validation))},
                        {"checks", results}};
    // Bytes that are no UTF-8 become U+FFFD.
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace zqm::cli
