// Mounts that only this process and its children see.

#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

namespace zqm::faults {

// Runs the test's body in a fork that may mount; skips the test, and says why, where the machine refuses
// that.
void withPrivateMounts(const std::function<void()>& body);

// Until the end of the scope. In such a body only; throws std::system_error.
class ScopedMount {
public:
    // A file system in memory: of so many bytes, and so many files with its own folder.
    static ScopedMount ofMemory(const std::filesystem::path& place, std::uintmax_t bytes, int files = 100);
    // One folder at the place of another.
    static ScopedMount ofFolder(const std::filesystem::path& folder, const std::filesystem::path& place);
    ~ScopedMount();
    ScopedMount(const ScopedMount&) = delete;
    ScopedMount& operator=(const ScopedMount&) = delete;

private:
    ScopedMount(const char* what, const std::filesystem::path& place, const char* type, unsigned long flags,
                const std::string& options);

    std::filesystem::path place_;
};

} // namespace zqm::faults
