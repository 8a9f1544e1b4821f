#pragma once

#include "cli/validate/findings.h"
#include "cli/validate/hosted_plugin.h"

#include <cstdint>

namespace zqm::cli {

// So many lives of the plugin, which has had its first one: each must give back every handle and lock. What a
// plugin makes once, at its first use, is not left behind by a life.
void checkLedger(HostedPlugin& plugin, LifePlan plan, std::uint64_t lives, Findings& findings);

} // namespace zqm::cli
