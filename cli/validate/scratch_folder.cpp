#include "cli/validate/scratch_folder.h"

#include "cli/command_line/failure.h"
#include "cli/system/temporary_folder.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace zqm::cli {

ScratchFolder::ScratchFolder() : path_(temporaryPlace() + "/zqmspeech-XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) {
        throw Failure("can't make a temporary folder in " + temporaryPlace() + ": " + std::strerror(errno));
    }
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

} // namespace zqm::cli
