#include "engine/confinement/file_rules.h"

#include "engine/listening/listening_lock.h"
#include "engine/protocol/speaking_lock.h"
#include "engine/protocol/user_file.h"
#include "engine/speaker/voices.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <pwd.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace zqm::engine {
namespace {

// Of the environment's variables those that the sound server's client goes by; null: the path is the
// system's.
struct NamedFile {
    const char* variable;
    const char* path;
    FileAccess access;
};

// As scripts/measure-confinement finds them used.
constexpr std::array kFiles {
    NamedFile{nullptr, ZQM_MODEL_FOLDER, FileAccess::ReadTree},      // how speech sounds
        NamedFile{nullptr, "/usr/lib/locale", FileAccess::ReadTree}, // what a letter is, for espeak-ng
        NamedFile{nullptr, "/usr/share/locale/locale.alias", FileAccess::Read}, // for that
        // Of the sound server's client: its settings,
        NamedFile{nullptr, "/etc/pulse", FileAccess::ReadTree},
        NamedFile{"XDG_CONFIG_HOME", "/pulse", FileAccess::ReadTree},
        NamedFile{"HOME", "/.config/pulse", FileAccess::ReadTree},
        NamedFile{"HOME", "/.pulse", FileAccess::ReadTree},
        NamedFile{"PULSE_CLIENTCONFIG", "", FileAccess::Read},
        NamedFile{"PULSE_CONFIG_PATH", "/client.conf", FileAccess::Read},
        NamedFile{"PULSE_CONFIG_PATH", "/client.conf.d", FileAccess::ReadTree},
        // the folder of the server's socket,
        NamedFile{"XDG_RUNTIME_DIR", "/pulse", FileAccess::List},
        NamedFile{"PULSE_RUNTIME_PATH", "", FileAccess::List},
        // what shows the server whose client it is,
        NamedFile{"HOME", "/.pulse-cookie", FileAccess::Read},
        NamedFile{"PULSE_COOKIE", "", FileAccess::Read},
        NamedFile{nullptr, "/etc/machine-id", FileAccess::Read},
        NamedFile{nullptr, "/var/lib/dbus/machine-id", FileAccess::Read},
        // names for the memory that it shares with the server, and what an earlier one left of that,
        NamedFile{nullptr, "/dev/urandom", FileAccess::Read},
        NamedFile{nullptr, "/dev/shm", FileAccess::List},
        // and the time of what it tells the system's log.
        NamedFile{nullptr, "/etc/localtime", FileAccess::Read},
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        // The sanitizers' libraries, in builds that nobody is given, look at this process's threads and
        // memory, and name the places of a mistake.
        NamedFile{nullptr, "/proc/self", FileAccess::ReadTree},
        NamedFile{nullptr, "/proc/self/exe", FileAccess::Read},
        NamedFile{nullptr, "/usr/lib", FileAccess::ReadTree},
#endif
};

constexpr std::string_view kHome = "HOME";

// Empty: it isn't set.
std::string valueOf(std::string_view variable) {
    const char* value = std::getenv(variable.data()); // NOLINT(concurrency-mt-unsafe): no one sets it
    if (value == nullptr && variable == kHome) {
        const passwd* const user = ::getpwuid(::geteuid()); // NOLINT(concurrency-mt-unsafe): one thread
        value = user != nullptr ? user->pw_dir : nullptr;
    }
    return value != nullptr ? value : "";
}

} // namespace

std::vector<FileRule> fileRules() {
    std::vector<FileRule> rules{{voiceFolder(), FileAccess::ReadTree}};
    for (const NamedFile& file : kFiles) {
        const std::string folder = file.variable != nullptr ? valueOf(file.variable) : "";
        if (file.variable == nullptr || !folder.empty()) {
            rules.push_back({folder + file.path, file.access});
        }
    }
    for (const char* const name : {protocol::SpeakingLock::kFileName, ListeningLock::kFileName}) {
        if (const auto file = protocol::openUserFile(name, protocol::IfAbsent::Create)) {
            const std::filesystem::path opened = "/proc/self/fd/" + std::to_string(file.get());
            std::error_code error;
            rules.push_back({std::filesystem::read_symlink(opened, error), FileAccess::ReadAndWrite});
        }
    }
    return rules;
}

} // namespace zqm::engine
