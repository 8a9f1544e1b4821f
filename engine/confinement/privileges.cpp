#include "engine/confinement/privileges.h"

#include <cerrno>
#include <sys/prctl.h>
#include <system_error>

namespace zqm::engine {

void refuseNewPrivileges() {
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) {
        throw std::system_error(errno, std::generic_category(), "no new privileges");
    }
}

} // namespace zqm::engine
