#include "cli/validate/checks/checks.h"
#include "cli/validate/checks/host_reports.h"
#include "cli/validate/checks/objects.h"

#include <zqmhost/zqmhost.h>

#include <array>
#include <cstdio>
#include <optional>
#include <string>

namespace zqm::cli {
namespace {

// A host that something is new in, with the newest revision of the plugin interface that it understands.
struct HostVersion {
    std::optional<double> version; // none: it doesn't tell
    std::int32_t revision;
};

// Each step, and the last host before it.
constexpr HostVersion kVersions[] = {
    {std::nullopt, 9},
    {2011.04, 9},
    {2012.0, 10},
    {2012.02, 10},
    {2013.0, 11},
    {2013.02, 11},
    {2013.03, 12},
    {2013.04, 13},
    {2015.04, 13},
    {2016.0, 13},
    {host::kDefaultVersion, 13},
};

std::string nameOf(const HostVersion& host) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "version %.2f", host.version.value_or(0));
    return host.version ? text.data() : "no version";
}

// In a process of its own: what a plugin has learnt of its host it never forgets.
void checkVersion(const Subject& subject, const HostVersion& host, Findings& findings) {
    host::Runtime runtime({.version = host.version});
    runtime.load(subject.library);
    const std::int32_t announced = runtime.announcedRevision().value_or(host.revision);
    if (announced > host.revision) {
        findings.fail("it announced revision " + std::to_string(announced) + " to a host that knows " +
                      std::to_string(host.revision));
    } else if (announced < host.revision) {
        findings.warn("it announced revision " + std::to_string(announced) + " to a host that knows " +
                      std::to_string(host.revision));
    }
    const host::Ledger before = runtime.ledger();
    makeOneOfEach(runtime, findings);
    if (runtime.ledger() != before) {
        findings.fail("objects that were made and dropped left something behind");
    }
    addReports(runtime, findings);
}

} // namespace

void checkVersions(const Subject& subject, Findings& findings) {
    for (const HostVersion& host : kVersions) {
        findings.apart(nameOf(host), [&](Findings& inner) { checkVersion(subject, host, inner); });
    }
}

} // namespace zqm::cli
