#pragma once

#include "cli/validate/findings.h"
#include "cli/validate/hosted_plugin.h"

#include <cstdint>

namespace zqm::cli {

// So many lives of the plugin, each of them twice: the second time must give back every handle and lock. What
// a plugin makes once, at the first use of a member or of an argument, is not left behind by a life.
void checkLedger(HostedPlugin& plugin, LifePlan plan, std::uint64_t lives, Findings& findings);

} // namespace zqm::cli
