#include "tests/support/scoped_environment.h"

#include <cstdlib>
#include <utility>

namespace zqm::support {

namespace {

void assign(const std::string& name, const std::optional<std::string>& value) {
    if (value) {
        setenv(name.c_str(), value->c_str(), 1);
    } else {
        unsetenv(name.c_str());
    }
}

} // namespace

ScopedEnvironment::ScopedEnvironment(std::string name, const std::optional<std::string>& value)
    : name_(std::move(name)) {
    if (const char* current = std::getenv(name_.c_str())) {
        before_ = current;
    }
    assign(name_, value);
}

ScopedEnvironment::~ScopedEnvironment() {
    assign(name_, before_);
}

} // namespace zqm::support
