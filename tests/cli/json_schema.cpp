#include "tests/cli/json_schema.h"

#include "tests/cli/say.h"

namespace zqm::tests {

std::string schemaErrors(const std::string& lines, const std::string& schema) {
    constexpr const char* kCheck = "import json, jsonschema, sys\n"
                                   "schema = json.load(open(sys.argv[1]))\n"
                                   "lines = sys.stdin.read().splitlines()\n"
                                   "for line in lines: jsonschema.validate(json.loads(line), schema)\n"
                                   "assert lines, 'there is no line'\n";
    support::ProcessOptions options = bareOptions();
    options.input = lines;
    const auto result = support::runProcess("/usr/bin/python3", {"-c", kCheck, schema}, options);
    return result.succeeded() ? "" : "not as the schema says: " + result.errors;
}

} // namespace zqm::tests
