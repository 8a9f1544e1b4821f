#include "cli/system/temporary_folder.h"

#include "cli/command_line/failure.h"

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include <signal.h>
#include <unistd.h>

namespace zqm::cli {
namespace {

// The one that there is, for a signal's handler, which may touch nothing else.
struct {
    std::array<char, PATH_MAX> path;
    std::array<char, PATH_MAX> file;
    volatile std::sig_atomic_t isThere = 0;
} present;

// Handlers must not see it half made.
class NoSignals {
public:
    NoSignals() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    NoSignals(const NoSignals&) = delete;
    NoSignals& operator=(const NoSignals&) = delete;
    ~NoSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_{};
};

} // namespace

std::string temporaryPlace() {
    const char* place = std::getenv("TMPDIR");
    return place != nullptr && *place != '\0' ? place : "/tmp";
}

std::string temporaryPlaceName() {
    return temporaryPlace() + " (TMPDIR names another place for temporary files)";
}

TemporaryFolder::TemporaryFolder(const std::string& name) : path_(temporaryPlace() + "/zqmspeech-XXXXXX") {
    if (path_.size() + 1 + name.size() >= present.file.size()) {
        throw Failure("can't make a temporary folder in " + temporaryPlace() + ": " +
                      std::strerror(ENAMETOOLONG));
    }
    const NoSignals quiet;
    if (mkdtemp(path_.data()) == nullptr) {
        throw Failure("can't make a temporary folder in " + temporaryPlace() + ": " + std::strerror(errno));
    }
    file_ = path_ + '/' + name;
    path_.copy(present.path.data(), path_.size());
    present.path[path_.size()] = '\0';
    file_.copy(present.file.data(), file_.size());
    present.file[file_.size()] = '\0';
    present.isThere = 1;
}

TemporaryFolder::~TemporaryFolder() {
    removeTemporaryFolder();
    present.isThere = 0;
}

void TemporaryFolder::removeFile() const {
    unlink(file_.c_str());
}

// Who writes the file may put it in place meanwhile.
void removeTemporaryFolder() {
    constexpr int kMostAttempts = 10;
    if (present.isThere == 0) {
        return;
    }
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        unlink(present.file.data());
        if (rmdir(present.path.data()) == 0 || errno != ENOTEMPTY) {
            return;
        }
    }
}

} // namespace zqm::cli
