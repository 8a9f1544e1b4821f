#include "engine/confinement/landlock.h"

#include "engine/confinement/privileges.h"
#include "engine/protocol/descriptor.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>

namespace zqm::engine {
namespace {

using protocol::Descriptor;

// linux/landlock.h as of version 7, so that the rights don't depend on the headers of the building machine.
struct Ruleset {
    std::uint64_t files;
    std::uint64_t network; // since version 4
    std::uint64_t scopes;  // since version 6
};

struct [[gnu::packed]] PathRule {
    std::uint64_t allowed;
    std::int32_t parent;
};

constexpr unsigned kAskVersion = 1;
constexpr int kPathRule = 1;

constexpr std::uint64_t kWriteFile = 1U << 1;
constexpr std::uint64_t kReadFile = 1U << 2;
constexpr std::uint64_t kReadFolder = 1U << 3;

// What is refused unless a rule permits it, and since which version there is such a right.
struct Right {
    int version;
    std::uint64_t bit;
};
constexpr std::array kFileRights{
    Right{1, (1U << 13) - 1}, // execute, write, read, list, remove (2), make (7 kinds)
    Right{2, 1U << 13},       // move or link to another folder
    Right{3, 1U << 14},       // truncate
    Right{5, 1U << 15},       // control a device
};
constexpr std::array kNetworkRights{Right{4, (1U << 0) | (1U << 1)}}; // bind and connect with TCP
constexpr std::array kScopes{Right{6, (1U << 0) | (1U << 1)}};        // abstract UNIX sockets, signals

template <typename Rights>
std::uint64_t rightsOf(const Rights& rights, int version) {
    std::uint64_t bits = 0;
    for (const Right& right : rights) {
        bits |= right.version <= version ? right.bit : 0;
    }
    return bits;
}

// An older kernel refuses a larger structure than its own.
std::size_t rulesetSize(int version) {
    constexpr int kWithNetwork = 4;
    constexpr int kWithScopes = 6;
    return version >= kWithScopes    ? sizeof(Ruleset)
           : version >= kWithNetwork ? offsetof(Ruleset, scopes)
                                     : offsetof(Ruleset, network);
}

struct Permission {
    std::uint64_t bits;
    bool isOfFolder;
};

Permission permissionOf(FileAccess access) {
    switch (access) {
    case FileAccess::List:
        return {kReadFolder, true};
    case FileAccess::Read:
        return {kReadFile, false};
    case FileAccess::ReadTree:
        return {kReadFile | kReadFolder, true};
    case FileAccess::ReadAndWrite:
        return {kReadFile | kWriteFile, false};
    }
    return {};
}

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

void add(int ruleset, const FileRule& rule) {
    const Descriptor file(::open(rule.path.c_str(), O_PATH | O_CLOEXEC));
    struct stat status {};
    const auto [bits, isOfFolder] = permissionOf(rule.access);
    // The kernel takes a right to a folder for one to all that is beneath it.
    if (!file || ::fstat(file.get(), &status) != 0 || S_ISDIR(status.st_mode) != isOfFolder) {
        return;
    }
    const PathRule path{bits, file.get()};
    if (::syscall(SYS_landlock_add_rule, ruleset, kPathRule, &path, 0) != 0) {
        fail(rule.path.c_str());
    }
}

int landlockVersion() {
    const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, kAskVersion);
    return version > 0 ? static_cast<int>(version) : 0;
}

} // namespace

int restrictFiles(std::span<const FileRule> rules) {
    const int version = landlockVersion();
    if (version == 0) {
        return 0;
    }
    const Ruleset rights{rightsOf(kFileRights, version), rightsOf(kNetworkRights, version),
                         rightsOf(kScopes, version)};
    const Descriptor ruleset(
        static_cast<int>(::syscall(SYS_landlock_create_ruleset, &rights, rulesetSize(version), 0)));
    if (!ruleset) {
        fail("Landlock");
    }
    for (const FileRule& rule : rules) {
        add(ruleset.get(), rule);
    }
    refuseNewPrivileges(); // the kernel wants that first
    if (::syscall(SYS_landlock_restrict_self, ruleset.get(), 0) != 0) {
        fail("Landlock");
    }
    return version;
}

} // namespace zqm::engine
