#pragma once

#include <filesystem>
#include <string_view>

namespace zqm::support {

// A new, empty folder of the test's own, removed with all it holds at the end. Throws
// std::filesystem::filesystem_error when it can't be made.
class TemporaryFolder {
public:
    explicit TemporaryFolder(std::string_view prefix = "zqm-test");
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

} // namespace zqm::support
