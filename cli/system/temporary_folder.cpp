#include "cli/system/temporary_folder.h"

#include "cli/command_line/failure.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

namespace zqm::cli {

std::string temporaryPlace() {
    const char* place = std::getenv("TMPDIR");
    return place != nullptr && *place != '\0' ? place : "/tmp";
}

TemporaryFolder::TemporaryFolder(const std::string& name) : path_(temporaryPlace() + "/zqmspeech-XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) {
        throw Failure("can't make a temporary folder in " + temporaryPlace() + ": " + std::strerror(errno));
    }
    file_ = path_ + '/' + name;
}

TemporaryFolder::~TemporaryFolder() {
    removeFile();
    rmdir(path_.c_str());
}

void TemporaryFolder::removeFile() const {
    unlink(file_.c_str());
}

} // namespace zqm::cli
