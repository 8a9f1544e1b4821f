#include "engine/output/file_placer.h"

#include "engine/confinement/system_calls.h"
#include "engine/protocol/socket_message.h"
#include "engine/protocol/temporary_name.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <poll.h>
#include <string_view>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace zqm::engine {
namespace {

using protocol::Descriptor;
using protocol::SocketMessage;

using Name = std::array<char, NAME_MAX + 1>;

// As it goes through the socket, with the descriptors of the file and its folder.
struct Request {
    Name temporaryName{};
    Name finalName{}; // empty: the temporary one is to be removed
};

ssize_t receive(SocketMessage& packet, int socket) {
    ssize_t count = 0;
    do {
        count = packet.receive(socket);
    } while (count < 0 && errno == EINTR);
    return count;
}

// ---- in the engine

bool set(Name& name, const std::string& text) {
    if (text.size() >= name.size()) {
        return false;
    }
    std::copy(text.begin(), text.end(), name.begin());
    return true;
}

int ask(int socket, int file, int folder, Request request) {
    SocketMessage question(&request, sizeof request);
    if (!question.attach(file) || !question.attach(folder) || question.send(socket) < 0) {
        return errno;
    }
    int error = 0;
    SocketMessage answer(&error, sizeof error);
    const ssize_t count = receive(answer, socket);
    return count == sizeof error ? error : count < 0 ? errno : EPIPE;
}

[[noreturn]] void fail() {
    throw std::system_error(errno, std::generic_category(), "no process for files");
}

// ---- in the process

bool isName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string_view::npos;
}

// As hosts open their outputs: the file for reading and writing, of which one alone, or neither, may mean a
// file that nobody gave the engine to write; the folder as a mere place, as an engine can open none.
bool areOpenedAsByHost(int file, int folder) {
    return (::fcntl(file, F_GETFL) & (O_ACCMODE | O_PATH)) == O_RDWR &&
           (::fcntl(folder, F_GETFL) & O_PATH) != 0;
}

struct Link {
    std::array<char, PATH_MAX> path{};
    std::string_view target;
};

// Where a descriptor's file is.
bool follow(int descriptor, Link& link) {
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), "/proc/self/fd/%d", descriptor);
    const ssize_t length = ::readlink(name.data(), link.path.data(), link.path.size());
    link.target = {link.path.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
    return length > 0 && static_cast<std::size_t>(length) < link.path.size();
}

// Whether a file without a name was opened in the folder: the kernel shows it there as "#NUMBER (deleted)".
bool isNamelessIn(int file, int folder) {
    Link opened;
    Link place;
    if (!follow(file, opened) || !follow(folder, place)) {
        return false;
    }
    std::string_view rest = opened.target;
    if (!rest.starts_with(place.target)) {
        return false;
    }
    rest.remove_prefix(place.target.size());
    if (place.target != "/") {
        if (!rest.starts_with('/')) {
            return false;
        }
        rest.remove_prefix(1);
    }
    constexpr std::string_view kBegin = "#";
    constexpr std::string_view kEnd = " (deleted)";
    if (!rest.starts_with(kBegin) || !rest.ends_with(kEnd)) {
        return false;
    }
    rest.remove_prefix(kBegin.size());
    rest.remove_suffix(kEnd.size());
    return !rest.empty() && std::all_of(rest.begin(), rest.end(),
                                        [](unsigned char digit) { return std::isdigit(digit) != 0; });
}

bool isNamed(const struct stat& status, int folder, const char* name) {
    struct stat named {};
    return ::fstatat(folder, name, &named, AT_SYMLINK_NOFOLLOW) == 0 && named.st_dev == status.st_dev &&
           named.st_ino == status.st_ino;
}

int errorOf(int result) {
    return result == 0 ? 0 : errno;
}

int giveName(int file, int folder, const char* name) {
    std::array<char, 32> opened{};
    std::snprintf(opened.data(), opened.size(), "/proc/self/fd/%d", file);
    return errorOf(::linkat(AT_FDCWD, opened.data(), folder, name, AT_SYMLINK_FOLLOW));
}

int serve(const Request& request, int file, int folder) {
    const char* const temporary = request.temporaryName.data();
    const char* const final = request.finalName.data();
    const bool removes = *final == '\0';
    struct stat status {};
    if (request.temporaryName.back() != '\0' || request.finalName.back() != '\0' ||
        !protocol::isTemporaryName(temporary) || !(removes || isName(final)) ||
        !areOpenedAsByHost(file, folder) || ::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        return EPERM;
    }
    if (status.st_nlink == 0 && !removes) {
        if (!isNamelessIn(file, folder)) {
            return EPERM;
        }
        if (const int error = giveName(file, folder, temporary)) {
            return error;
        }
    } else if (!isNamed(status, folder, temporary)) {
        return status.st_nlink == 0 ? ENOENT : EPERM;
    }
    if (removes) {
        return errorOf(::unlinkat(folder, temporary, 0));
    }
    const int error = errorOf(::renameat(folder, temporary, folder, final));
    if (error != 0) {
        ::unlinkat(folder, temporary, 0);
    }
    return error;
}

void serveAll(int socket) {
    for (;;) {
        Request request;
        SocketMessage question(&request, sizeof request);
        const ssize_t count = receive(question, socket);
        if (count <= 0) {
            return;
        }
        Descriptor file;
        Descriptor folder;
        question.takeDescriptors([&](Descriptor came) {
            Descriptor& wanted = file ? folder : file;
            if (!wanted) {
                wanted = std::move(came);
            }
        });
        int error =
            file && folder && count == sizeof request ? serve(request, file.get(), folder.get()) : EINVAL;
        static_cast<void>(SocketMessage(&error, sizeof error).send(socket));
    }
}

// Nothing of the engine stays open in it: the host shall see the engine's end. What asks a program to end is
// the engine's affair, which may still need this process then.
[[noreturn]] void run(int socket) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        ::signal(number, SIG_IGN);
    }
    ::prctl(PR_SET_NAME, "zqmspeech-files", 0, 0, 0);
    if (socket > 0) {
        ::close_range(0, static_cast<unsigned>(socket) - 1, 0);
    }
    ::close_range(static_cast<unsigned>(socket) + 1, ~0U, 0);
    try {
        restrictSystemCalls(Work::PutInPlace);
        serveAll(socket);
    } catch (const std::exception&) {
        ::_exit(1); // the engine finds the socket closed
    }
    ::_exit(0);
}

} // namespace

FilePlacer::FilePlacer() {
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        fail();
    }
    socket_.reset(ends[0]);
    const Descriptor other(ends[1]);
    process_ = ::fork();
    if (process_ == 0) {
        run(other.get());
    }
    if (process_ < 0) {
        fail();
    }
}

FilePlacer::~FilePlacer() {
    socket_.reset();
    ::waitpid(process_, nullptr, 0);
}

bool FilePlacer::hasEnded() const {
    pollfd socket{socket_.get(), 0, 0};
    return ::poll(&socket, 1, 0) > 0;
}

int FilePlacer::place(int file, int folder, const std::string& temporaryName,
                      const std::string& finalName) const {
    return finalName.empty() ? ENOENT : request(file, folder, temporaryName, finalName);
}

int FilePlacer::remove(int file, int folder, const std::string& temporaryName) const {
    return request(file, folder, temporaryName, {});
}

int FilePlacer::request(int file, int folder, const std::string& temporaryName,
                        const std::string& finalName) const {
    Request request;
    if (!set(request.temporaryName, temporaryName) || !set(request.finalName, finalName)) {
        return ENAMETOOLONG;
    }
    return ask(socket_.get(), file, folder, request);
}

} // namespace zqm::engine
