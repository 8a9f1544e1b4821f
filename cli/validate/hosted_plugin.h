// The plugin that is validated, in a host.

#pragma once

#include "cli/validate/check.h"
#include "cli/validate/findings.h"
#include "cli/validate/plugin_life.h"

#include <zqmhost/zqmhost.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::cli {

class HostedPlugin {
public:
    // Loads it, in a host that was prepared so. What the host reports of that is forgotten: it is another
    // check's matter.
    HostedPlugin(
        const Subject& subject, Findings& findings, const host::Options& options = {},
        const std::function<void(host::Runtime&)>& prepare = [](host::Runtime&) {});

    // One life of it, that of this number: the same for the same seed and number. It begins in the folder of
    // the subject, whatever became of that. Answers the members that could not be called, as PluginLife tells
    // them.
    std::vector<std::string> live(LifePlan plan = {}, std::uint64_t number = 0);

    host::Runtime& runtime() { return runtime_; }

private:
    const Subject& subject_;
    Findings& findings_;
    host::Runtime runtime_;
};

// Does this apart, with absolute paths, in the folder for what the plugin writes, which is also the user's
// home and the place for temporary files there. Nothing is to be heard of it, and it listens to nobody.
Verdict tryApart(const Subject& subject, Findings& findings, std::string_view step,
                 const std::function<void(const Subject&, Findings&)>& work, Verdict most = Verdict::Crash);

} // namespace zqm::cli
