// The functions of the checks, a source for each.

#pragma once

#include "cli/validate/check.h"

namespace zqm::cli {

void checkLoad(const Subject& subject, Findings& findings);
void checkStart(const Subject& subject, Findings& findings);
void checkExports(const Subject& subject, Findings& findings);
void checkRecords(const Subject& subject, Findings& findings);
void checkVersions(const Subject& subject, Findings& findings);
void checkRestart(const Subject& subject, Findings& findings);
void checkMembers(const Subject& subject, Findings& findings);
void checkHandles(const Subject& subject, Findings& findings);
void checkUnconstructed(const Subject& subject, Findings& findings);
void checkArguments(const Subject& subject, Findings& findings);
void checkRefused(const Subject& subject, Findings& findings);
void checkRefusedSets(const Subject& subject, Findings& findings);
void checkFailingCalls(const Subject& subject, Findings& findings);
void checkGrowth(const Subject& subject, Findings& findings);
void checkUnload(const Subject& subject, Findings& findings);

} // namespace zqm::cli
