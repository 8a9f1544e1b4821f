#include "cli/system/platform_log.h"

namespace zqm::cli {

// macOS keeps its reasons to itself.
PlatformLog::PlatformLog() = default;

PlatformLog::~PlatformLog() = default;

std::string PlatformLog::reason() {
    return "the platform does not say why";
}

bool PlatformLog::hasReason() {
    return false;
}

} // namespace zqm::cli
