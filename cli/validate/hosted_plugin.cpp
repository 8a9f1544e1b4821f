#include "cli/validate/hosted_plugin.h"

#include <cstdlib>
#include <filesystem>

#include <sys/stat.h>

namespace zqm::cli {

namespace {

// The plugin may have removed it, and gone elsewhere.
void enter(const std::string& folder) {
    mkdir(folder.c_str(), S_IRWXU);
    std::filesystem::current_path(folder);
}

void moveIn(const std::string& folder) {
    enter(folder);
    // NOLINTBEGIN(concurrency-mt-unsafe): one thread
    setenv("HOME", folder.c_str(), 1);
    setenv("TMPDIR", folder.c_str(), 1);
    // Without them all these are in the home.
    for (const char* variable : {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
        unsetenv(variable);
    }
    setenv("PULSE_SERVER", "unix:/nonexistent/sound-server", 1);
    // NOLINTEND(concurrency-mt-unsafe)
}

} // namespace

HostedPlugin::HostedPlugin(const Subject& subject, Findings& findings, const host::Options& options,
                           const std::function<void(host::Runtime&)>& prepare)
    : subject_(subject), findings_(findings), runtime_(options) {
    prepare(runtime_);
    findings_.at("loading");
    runtime_.load(subject.library);
    runtime_.clearReports();
}

std::vector<std::string> HostedPlugin::live(LifePlan plan, std::uint64_t number) {
    enter(subject_.folder);
    PluginLife life(runtime_, subject_.seed + number, subject_.folder, plan,
                    [&](const std::string& what) { findings_.at(what); });
    life.live();
    return life.uncalled();
}

Verdict tryApart(const Subject& subject, Findings& findings, std::string_view step,
                 const std::function<void(const Subject&, Findings&)>& work, Verdict most) {
    return findings.apart(
        step,
        [&](Findings& found) {
            Subject there = subject;
            there.library = std::filesystem::absolute(subject.library).string();
            there.folder = std::filesystem::weakly_canonical(subject.folder).string();
            moveIn(there.folder);
            work(there, found);
        },
        most);
}

} // namespace zqm::cli
