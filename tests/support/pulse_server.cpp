#include "tests/support/pulse_server.h"

#include <chrono>
#include <csignal>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "tests/support/process_table.h"

namespace zqm::support {

namespace {

using namespace std::chrono_literals;

constexpr auto kStartDeadline = 60s;
constexpr auto kAnswerDeadline = 60s;
constexpr auto kRetryPause = 20ms;
constexpr const char* kServerVariable = "PULSE_SERVER";
constexpr const char* kCookieVariable = "PULSE_COOKIE";

} // namespace

PulseServer::PulseServer(int rate, int channels)
    : rate_(rate), channels_(channels), folder_("zqm-pulse"),
      address_("unix:" + (folder_ / "native").string()) {
    start();
}

std::map<std::string, std::optional<std::string>> PulseServer::environment() const {
    return {{kServerVariable, address_}, {kCookieVariable, (folder_ / "cookie").string()}};
}

void PulseServer::start() {
    const std::string folder = folder_.path().string();
    ProcessOptions options;
    options.folder = folder;
    options.environment = {{"HOME", folder},
                           {"XDG_CONFIG_HOME", folder},
                           {"XDG_RUNTIME_DIR", folder},
                           {"PULSE_RUNTIME_PATH", folder},
                           {"PULSE_STATE_PATH", folder},
                           {"PULSE_SERVER", std::nullopt},
                           {"PULSE_SCRIPT", std::nullopt},
                           {"PULSE_DLPATH", std::nullopt},
                           {"DBUS_SESSION_BUS_ADDRESS", std::nullopt},
                           {"DISPLAY", std::nullopt}};
    server_ = std::make_unique<Process>(
        "pulseaudio",
        std::vector<std::string>{
            "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1", "--realtime=no",
            "--high-priority=no", "--log-target=stderr", "--log-level=error", "-L",
            "module-native-protocol-unix auth-anonymous=1 socket=" + (folder_ / "native").string(), "-L",
            "module-null-sink " + describe(kPulseSink)},
        options);
    const auto end = std::chrono::steady_clock::now() + kStartDeadline;
    while (!answers()) {
        if (!server_->running() || std::chrono::steady_clock::now() > end) {
            throw std::runtime_error("the PulseAudio server doesn't answer: " + server_->result().errors);
        }
        std::this_thread::sleep_for(kRetryPause);
    }
}

bool PulseServer::answers() const {
    ProcessOptions options;
    options.environment = environment();
    return std::filesystem::exists(folder_ / "native") &&
           runProcess("pactl", {"info"}, options, kAnswerDeadline).succeeded();
}

std::string PulseServer::describe(const std::string& sink) const {
    return "sink_name=" + sink + " format=s16ne rate=" + std::to_string(rate_) +
           " channels=" + std::to_string(channels_);
}

std::string PulseServer::control(const std::vector<std::string>& arguments) const {
    ProcessOptions options;
    options.environment = environment();
    const ProcessResult result = runProcess("pactl", arguments, options);
    if (!result.succeeded()) {
        throw std::runtime_error("pactl: " + result.errors);
    }
    return result.output;
}

void PulseServer::addSink(const std::string& name) const {
    control({"load-module", "module-null-sink", describe(name)});
}

void PulseServer::removeSink(const std::string& name) const {
    std::istringstream modules(control({"list", "short", "modules"}));
    for (std::string line; std::getline(modules, line);) {
        if (line.find("sink_name=" + name + ' ') != std::string::npos) {
            control({"unload-module", line.substr(0, line.find('\t'))});
            return;
        }
    }
    throw std::runtime_error("there is no sink " + name);
}

void PulseServer::kill() {
    server_.reset();
}

void PulseServer::freeze() {
    halt(server_->pid());
}

void PulseServer::thaw() {
    server_->signal(SIGCONT);
}

void PulseServer::restart() {
    kill();
    std::filesystem::remove(folder_ / "native");
    start();
}

ScopedPulseServer::ScopedPulseServer(const PulseServer& server)
    : address_(kServerVariable, server.address()),
      cookie_(kCookieVariable, server.environment().at(kCookieVariable)) {}

ScopedPulseServer::ScopedPulseServer(const std::string& address)
    : address_(kServerVariable, address), cookie_(kCookieVariable, "/dev/null") {}

} // namespace zqm::support
