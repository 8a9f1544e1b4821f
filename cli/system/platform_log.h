#pragma once

#include <string>

namespace zqm::cli {

// The platform answers only that speech failed, or nothing where phonemes are asked for, and logs why. While
// one of these exists, that reason is kept for the command's own message instead, and what the command is
// told of listening otherwise is left out; whatever else the platform logs still goes to standard error. One
// at a time.
class PlatformLog {
public:
    PlatformLog();
    PlatformLog(const PlatformLog&) = delete;
    PlatformLog& operator=(const PlatformLog&) = delete;
    ~PlatformLog();

    // Why speech, or what was asked about it, failed last, in a few words.
    static std::string reason();
    static bool hasReason(); // it was told
};

} // namespace zqm::cli
