#include "cli/inspect/inspect_command.h"

#include "cli/command_line/exit_codes.h"
#include "cli/command_line/failure.h"
#include "cli/command_line/message.h"
#include "cli/inspect/inspect_json.h"
#include "cli/inspect/inspect_markdown.h"
#include "cli/inspect/inspect_text.h"
#include "cli/inspect/inspected_library.h"
#include "cli/inspect/trial.h"
#include "cli/system/standard_output.h"
#include "cli/terminal/terminal_line.h"

#include <zqmhost/zqmhost.h>

#include <cstdio>
#include <string>

#include <unistd.h>

namespace zqm::cli {
namespace {

void tellBreaches(const host::Runtime& runtime) {
    for (const host::Report& report : runtime.reports()) {
        tell(std::string(host::nameOf(report.kind)) + ": " + report.text);
    }
}

// Where loading fails, what the host noted before may say why.
void load(host::Runtime& runtime, const std::string& library) {
    try {
        runtime.load(library);
    } catch (...) {
        tellBreaches(runtime);
        throw;
    }
    tellBreaches(runtime);
}

// A library that is damaged, or whose code is, can end the program that loads it.
void expectToSurvive(const std::string& library) {
    const std::string end = endInTrial([&] {
        host::Runtime runtime;
        runtime.load(library);
        runtime.describeClasses();
    });
    if (!end.empty()) {
        throw Failure(library + " is damaged or has a fault: what loads it ends (" + end + ")");
    }
}

std::string documentOf(const InspectedLibrary& library, const InspectOptions& options) {
    if (options.json) {
        return inspectionJson(library);
    }
    if (options.markdown) {
        return inspectionMarkdown(library);
    }
    return inspectionText(library, terminalColumns(STDOUT_FILENO));
}

} // namespace

int inspect(const InspectOptions& options) {
    expectToSurvive(options.library);
    host::Runtime runtime;
    InspectedLibrary library;
    library.name = options.library.substr(options.library.rfind('/') + 1);
    {
        const SilentOutput silent; // whatever the library prints
        load(runtime, options.library);
        library.revision = runtime.announcedRevision();
        library.classes = runtime.describeClasses();
    }
    const std::string document = documentOf(library, options);
    std::fwrite(document.data(), 1, document.size(), stdout);
    return runtime.reports().empty() ? kDone : kFailed;
}

} // namespace zqm::cli
