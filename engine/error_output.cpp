#include "engine/error_output.h"

#include "engine/protocol/descriptor.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace zqm::engine {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kReportsAreWritten = true;
#else
constexpr bool kReportsAreWritten = false;
#endif

int own = STDERR_FILENO;

} // namespace

void tellError(const char* words) {
    static_cast<void>(::dprintf(own, "zqmspeech-engine: %s\n", words));
}

void silenceLibraries() {
    if (kReportsAreWritten) {
        return;
    }
    protocol::Descriptor kept(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    const protocol::Descriptor nothing(::open("/dev/null", O_WRONLY | O_CLOEXEC));
    if (!kept || !nothing || ::dup2(nothing.get(), STDERR_FILENO) < 0) {
        throw std::system_error(errno, std::generic_category(), "standard error");
    }
    own = kept.release();
}

} // namespace zqm::engine
