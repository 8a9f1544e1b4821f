#pragma once

#include "cli/validate/check.h"
#include "cli/validate/findings.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zqm::cli {

// A host that something is new in, with the newest revision of the plugin interface that it understands.
struct HostVersion {
    std::optional<double> version; // none: it doesn't tell
    std::int32_t revision;
};

// Each step, and the last host before it, ascending; the last one is the host of today.
std::span<const HostVersion> hostVersions();
std::vector<HostVersion> hostVersionsFromNewest();

std::string nameOf(const HostVersion& host);

// Does this apart (tryApart) with each of them, from today's back to the first that fails: what fails with
// one hardly works with those before it, and a hang would take all its time with each.
void tryWithEachVersion(const Subject& subject, Findings& findings,
                        const std::function<void(const HostVersion&, const Subject&, Findings&)>& work);

} // namespace zqm::cli
