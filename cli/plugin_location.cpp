#include "cli/plugin_location.h"

#include "cli/failure.h"

#include <cstdint>
#include <system_error>

#ifdef __APPLE__
#include <array>
#include <climits>
#include <mach-o/dyld.h>
#endif

namespace zqm::cli {
namespace {

std::filesystem::path programPath() {
#ifdef __APPLE__
    std::array<char, PATH_MAX> buffer{};
    std::uint32_t size = buffer.size();
    if (_NSGetExecutablePath(buffer.data(), &size) != 0) {
        throw Failure("can't find this program's own file");
    }
    return std::filesystem::canonical(buffer.data());
#else
    std::error_code error;
    std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) {
        throw Failure("can't find this program's own file: " + error.message());
    }
    return path;
#endif
}

} // namespace

std::filesystem::path findPlugin() {
    return findPlugin(programPath().parent_path());
}

std::filesystem::path findPlugin(const std::filesystem::path& programFolder) {
    const std::filesystem::path installed = ZQM_LIBRARY_FOLDER;
    for (const std::filesystem::path& folder : {programFolder, installed}) {
        std::error_code error;
        if (std::filesystem::exists(folder / ZQM_PLUGIN_FILE, error)) {
            return folder / ZQM_PLUGIN_FILE;
        }
    }
    throw Failure(ZQM_PLUGIN_FILE " is missing: it is neither in " + programFolder.string() + " nor in " +
                  installed.string());
}

} // namespace zqm::cli
