// Becomes the engine, with less of the machine: ZQM_ENGINE_LIMITS says of what, and how much, as in
// "memory=50000000 descriptors=7".

#include <array>
#include <cstdlib>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::array<std::pair<const char*, int>, 3> kResources{
    {{"memory", RLIMIT_AS}, {"data", RLIMIT_DATA}, {"descriptors", RLIMIT_NOFILE}}};

void limit(const std::string& assignment) {
    for (const auto& [name, resource] : kResources) {
        const std::string begin = std::string(name) + '=';
        if (assignment.starts_with(begin)) {
            const rlim_t most = std::stoull(assignment.substr(begin.size()));
            const rlimit limits{most, most};
            if (::setrlimit(static_cast<__rlimit_resource>(resource), &limits) != 0) {
                std::abort();
            }
        }
    }
}

} // namespace

int main(int, char** argv) {
    const char* const limits = std::getenv("ZQM_ENGINE_LIMITS"); // NOLINT(concurrency-mt-unsafe): one thread
    std::istringstream assignments(limits != nullptr ? limits : "");
    for (std::string assignment; assignments >> assignment;) {
        limit(assignment);
    }
    ::execv(ZQM_ENGINE, argv);
    return EXIT_FAILURE;
}
