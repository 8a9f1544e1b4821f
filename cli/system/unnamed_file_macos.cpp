#include "cli/system/unnamed_file.h"

#include <cerrno>

namespace zqm::cli {

int openUnnamedFile(int /*folder*/) {
    errno = ENOTSUP;
    return -1;
}

bool nameFile(int /*file*/, int /*folder*/, const std::string& /*name*/) {
    errno = ENOTSUP;
    return false;
}

} // namespace zqm::cli
