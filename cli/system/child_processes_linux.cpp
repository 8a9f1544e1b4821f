#include "cli/system/child_processes.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace zqm::cli {

namespace fs = std::filesystem;

// The kernel lists the children of each thread that started them.
std::vector<pid_t> childrenOf(pid_t process) {
    std::vector<pid_t> children;
    for (const fs::directory_entry& thread :
         fs::directory_iterator("/proc/" + std::to_string(process) + "/task")) {
        std::ifstream list(thread.path() / "children");
        children.insert(children.end(), std::istream_iterator<pid_t>(list), {});
    }
    return children;
}

} // namespace zqm::cli
