#include "cli/validate/checks/host_versions.h"

#include "cli/validate/hosted_plugin.h"

#include <zqmhost/zqmhost.h>

#include <array>
#include <cstdio>

namespace zqm::cli {

std::span<const HostVersion> hostVersions() {
    static constexpr std::array kVersions{
        HostVersion{std::nullopt, 9},
        HostVersion{2011.04, 9},
        HostVersion{2012.0, 10},
        HostVersion{2012.02, 10},
        HostVersion{2013.0, 11},
        HostVersion{2013.02, 11},
        HostVersion{2013.03, 12},
        HostVersion{2013.04, 13},
        HostVersion{2015.04, 13},
        HostVersion{2016.0, 13},
        HostVersion{host::kDefaultVersion, 13},
    };
    return kVersions;
}

std::vector<HostVersion> hostVersionsFromNewest() {
    const std::span<const HostVersion> versions = hostVersions();
    return {versions.rbegin(), versions.rend()};
}

std::string nameOf(const HostVersion& host) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "version %.2f", host.version.value_or(0));
    return host.version ? text.data() : "no version";
}

void tryWithEachVersion(const Subject& subject, Findings& findings,
                        const std::function<void(const HostVersion&, const Subject&, Findings&)>& work) {
    for (const HostVersion& host : hostVersionsFromNewest()) {
        const Verdict worst =
            tryApart(subject, findings, nameOf(host),
                     [&](const Subject& there, Findings& found) { work(host, there, found); });
        if (worst >= Verdict::Fail) {
            return;
        }
    }
}

} // namespace zqm::cli
