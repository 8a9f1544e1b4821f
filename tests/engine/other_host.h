// An engine of another host process than the test itself.

#pragma once

#include "tests/engine/engine_process.h"

#include <optional>
#include <sys/types.h>

namespace zqm::test {

class OtherHost {
public:
    explicit OtherHost(const Environment& environment = {});
    // Kills the host, with which its engine ends.
    ~OtherHost();
    OtherHost(const OtherHost&) = delete;
    OtherHost& operator=(const OtherHost&) = delete;

    // The conversation of its host is the test's.
    EngineProcess& engine() { return *engine_; }

private:
    pid_t host_ = -1;
    std::optional<EngineProcess> engine_;
};

} // namespace zqm::test
