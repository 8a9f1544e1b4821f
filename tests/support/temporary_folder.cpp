#include "tests/support/temporary_folder.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace zqm::support {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder(std::string_view prefix) {
    std::string name = (fs::temp_directory_path() / prefix).string() + "-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) {
        throw fs::filesystem_error("mkdtemp", name, std::error_code(errno, std::generic_category()));
    }
    path_ = fs::canonical(name); // on macOS the folder for these is behind a link
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

} // namespace zqm::support
