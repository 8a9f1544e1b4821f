#include "tests/faults/private_mounts.h"

#include "tests/support/fresh_process.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <gmock/gmock.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace zqm::faults {

namespace {

// Who may not mount in the namespace of all is root of one of its own.
bool enterNamespace() {
    const uid_t user = ::geteuid();
    const gid_t group = ::getegid();
    if (user == 0 ? ::unshare(CLONE_NEWNS) != 0 : ::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        return false;
    }
    if (user != 0) {
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
        std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
    }
    return ::mount("", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// What a process of its own learns when it tries; 0: it can.
int errorOfMounting() {
    const pid_t child = ::fork();
    if (child == 0) {
        const bool can = enterNamespace() && ::mount("none", "/tmp", "tmpfs", 0, nullptr) == 0;
        ::_exit(can ? 0 : errno);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : ECHILD;
}

} // namespace

void withPrivateMounts(const std::function<void()>& body) {
    if (const int error = errorOfMounting(); error != 0) {
        // Forbidden, by the kernel or by what confines this process; not known to it; or no namespaces to be
        // had.
        ASSERT_THAT(error, testing::AnyOf(EPERM, EACCES, EINVAL, ENOSPC)) << std::strerror(error);
        GTEST_SKIP() << "this machine allows no private mounts: " << std::strerror(error);
    }
    support::inFork([&] {
        ASSERT_TRUE(enterNamespace());
        body();
    });
}

ScopedMount::ScopedMount(const char* what, const std::filesystem::path& place, const char* type,
                         unsigned long flags, const std::string& options)
    : place_(place) {
    if (::mount(what, place.c_str(), type, flags, options.c_str()) != 0) {
        throw std::system_error(errno, std::generic_category(), "mount " + place.string());
    }
}

ScopedMount ScopedMount::ofMemory(const std::filesystem::path& place, std::uintmax_t bytes, int files) {
    return {"none", place, "tmpfs", 0,
            "size=" + std::to_string(bytes) + ",nr_inodes=" + std::to_string(files)};
}

ScopedMount ScopedMount::ofFolder(const std::filesystem::path& folder, const std::filesystem::path& place) {
    return {folder.c_str(), place, nullptr, MS_BIND, ""};
}

ScopedMount::~ScopedMount() {
    ::umount2(place_.c_str(), MNT_DETACH);
}

} // namespace zqm::faults
