// The plugin that is validated, in a host.

#pragma once

#include "cli/validate/check.h"
#include "cli/validate/findings.h"
#include "cli/validate/plugin_life.h"

#include <zqmhost/zqmhost.h>

#include <functional>
#include <string>
#include <string_view>

namespace zqm::cli {

class HostedPlugin {
public:
    // Loads it. What the host reports of that is forgotten: it is another check's matter.
    HostedPlugin(const Subject& subject, Findings& findings, const host::Options& options = {});

    // One life of it, that of this number: the same for the same seed and number.
    void live(LifePlan plan = {}, std::uint64_t number = 0);

    host::Runtime& runtime() { return runtime_; }

private:
    const Subject& subject_;
    Findings& findings_;
    host::Runtime runtime_;
};

// Does this apart, with a library of an absolute path, in the folder for what the plugin writes. Nothing is
// to be heard of it, and it listens to nobody.
Verdict tryApart(const Subject& subject, Findings& findings, std::string_view step,
                 const std::function<void(const Subject&, Findings&)>& work, Verdict most = Verdict::Crash);

} // namespace zqm::cli
