#include "cli/system/standard_descriptors.h"

#include <fcntl.h>
#include <unistd.h>

namespace zqm::cli {

void occupyStandardDescriptors() {
    for (int standard = STDIN_FILENO; standard <= STDERR_FILENO; ++standard) {
        if (fcntl(standard, F_GETFD) == -1) { // it is the lowest that is free, and so what is opened
            static_cast<void>(open("/dev/null", standard == STDIN_FILENO ? O_WRONLY : O_RDONLY));
        }
    }
}

} // namespace zqm::cli
