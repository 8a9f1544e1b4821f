#include "cli/validate/hosted_plugin.h"

#include <cstdlib>
#include <filesystem>

namespace zqm::cli {

HostedPlugin::HostedPlugin(const Subject& subject, Findings& findings, const host::Options& options)
    : subject_(subject), findings_(findings), runtime_(options) {
    findings_.at("loading");
    runtime_.load(subject.library);
    runtime_.clearReports();
}

void HostedPlugin::live(LifePlan plan, std::uint64_t number) {
    PluginLife life(runtime_, subject_.seed + number, plan,
                    [&](const std::string& what) { findings_.at(what); });
    life.live();
}

Verdict tryApart(const Subject& subject, Findings& findings, std::string_view step,
                 const std::function<void(const Subject&, Findings&)>& work, Verdict most) {
    return findings.apart(
        step,
        [&](Findings& found) {
            Subject there = subject;
            there.library = std::filesystem::absolute(subject.library).string();
            std::filesystem::current_path(subject.folder);
            setenv("PULSE_SERVER", "unix:/nonexistent/sound-server", 1); // NOLINT(concurrency-mt-unsafe)
            work(there, found);
        },
        most);
}

} // namespace zqm::cli
