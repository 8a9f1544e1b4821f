#include "cli/system/plugin_location.h"

#include "cli/command_line/failure.h"
#include "cli/system/free_descriptors.h"
#include "cli/system/program_file.h"

#include <zqmhost/zqmhost.h>

#include <unistd.h>

namespace zqm::cli {
namespace {

// The run loop's and a little more: with these, what wants others says so itself.
constexpr std::size_t kLeastDescriptors = 8;

} // namespace

std::string findPlugin() {
    const std::string program = programFile();
    return findPlugin(program.substr(0, program.rfind('/')));
}

std::string findPlugin(const std::string& programFolder) {
    const std::string installed = programFolder + "/" ZQM_LIBRARY_FOLDER;
    for (const std::string& folder : {programFolder, installed}) {
        std::string plugin = folder + "/" ZQM_PLUGIN_FILE;
        if (access(plugin.c_str(), F_OK) == 0) {
            return plugin;
        }
    }
    throw Failure(ZQM_PLUGIN_FILE " is missing: it is neither in " + programFolder + " nor in " + installed);
}

void loadPlugin(host::Runtime& runtime) {
    requireFreeDescriptors(kLeastDescriptors, "to run the plugin");
    const std::string plugin = findPlugin();
    runtime.load(plugin);
    runtime.loadBeside(plugin, ZQM_SIBLING);
}

} // namespace zqm::cli
