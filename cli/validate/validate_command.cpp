#include "cli/validate/validate_command.h"

#include "cli/command_line/exit_codes.h"
#include "cli/system/free_descriptors.h"
#include "cli/system/interruption.h"
#include "cli/terminal/colours.h"
#include "cli/terminal/terminal_line.h"
#include "cli/validate/scratch_folder.h"
#include "cli/validate/validate_json.h"
#include "cli/validate/validate_text.h"
#include "cli/validate/validation.h"

#include <zqmhost/zqmhost.h>

#include <cstdio>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

namespace zqm::cli {
namespace {

void print(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

// With fewer, what a plugin can't open might not be its own fault.
constexpr std::size_t kLeastDescriptors = 64;

// The last name in a path, which is the path itself where nothing but slashes is in it.
std::string lastNameIn(const std::string& path) {
    const std::size_t last = path.find_last_not_of('/');
    if (last == std::string::npos) {
        return path;
    }
    const std::size_t begin = path.rfind('/', last) + 1;
    return path.substr(begin, last + 1 - begin);
}

std::uint64_t anySeed() {
    return std::random_device()();
}

std::vector<const Check*> wantedChecks(const ValidateOptions& options) {
    if (!options.only.empty()) {
        return options.only;
    }
    std::vector<const Check*> all;
    for (const Check& check : checks()) {
        all.push_back(&check);
    }
    return all;
}

CheckRun resultOf(const Check& check, const ValidateOptions& options, std::uint64_t seed,
                  const std::vector<CheckResult>& earlier) {
    const std::string cause = causeToSkip(check, earlier);
    if (cause.empty()) {
        const ScratchFolder folder; // what other checks leave would change what this one finds
        return runCheck(check, {options.library, seed, folder.path()}, Findings::Seconds(options.timeLimit));
    }
    return {{.check = check.name,
             .summary = check.summary,
             .verdict = Verdict::Skip,
             .findings = {{Verdict::Skip, cause}}}};
}

} // namespace

int validate(const ValidateOptions& options) {
    if (options.list) {
        print(checkList());
        return kDone;
    }
    host::Runtime::requireFile(options.library);
    requireFreeDescriptors(kLeastDescriptors, "to check a plugin");
    const ValidateLayout layout{terminalColumns(STDOUT_FILENO), areColoursWanted(STDOUT_FILENO)};
    Validation validation{.library = lastNameIn(options.library),
                          .seed = options.seed ? *options.seed : anySeed(),
                          .results = {}};
    const Interruption interruption;
    for (const Check* check : wantedChecks(options)) {
        CheckRun run = resultOf(*check, options, validation.seed, validation.results);
        if (run.isInterrupted) {
            return kSignalled + Interruption::signalNumber();
        }
        if (!options.json) {
            print(resultText(run.result, layout));
        }
        validation.results.push_back(std::move(run.result));
    }
    print(options.json ? validationJson(validation) : summaryText(validation));
    return verdictOf(validation) < Verdict::Fail ? kDone : kFruitless;
}

} // namespace zqm::cli
