#pragma once

#include <optional>
#include <string>

namespace zqm::support {

// Sets an environment variable of this process, or removes it (no value), and restores what was there.
// Only where no other thread reads the environment.
class ScopedEnvironment {
public:
    ScopedEnvironment(std::string name, const std::optional<std::string>& value);
    ~ScopedEnvironment();
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    std::string name_;
    std::optional<std::string> before_;
};

} // namespace zqm::support
