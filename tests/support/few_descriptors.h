#pragma once

#include <sys/resource.h>
#include <unistd.h>

namespace zqm::support {

// While one of these lives, so many more can be opened.
class FewDescriptors {
public:
    explicit FewDescriptors(rlim_t spare) {
        ::getrlimit(RLIMIT_NOFILE, &before_);
        const int next = ::dup(STDIN_FILENO);
        ::close(next);
        const rlimit few{static_cast<rlim_t>(next) + spare, before_.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &few);
    }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;
    ~FewDescriptors() { ::setrlimit(RLIMIT_NOFILE, &before_); }

private:
    rlimit before_{};
};

} // namespace zqm::support
