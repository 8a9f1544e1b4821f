// Stands in the engine's place: starts the real one, hands on what it and its host say to each other, message
// by message with the descriptors, and does what a FaultyRoad has planned.

#include "engine/protocol/channel.h"
#include "engine/protocol/protocol.h"
#include "tests/endtoend/faulty_road.h"
#include "tests/support/descriptor_message.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <linux/sockios.h>
#include <map>
#include <optional>
#include <poll.h>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using zqm::endtoend::kBytesFile;
using zqm::endtoend::kFaultFolder;
using zqm::endtoend::kPlanFile;
using zqm::endtoend::kTaleFile;
using zqm::protocol::Channel;
using zqm::protocol::Descriptor;
using zqm::protocol::kEngineSocket;

constexpr std::chrono::milliseconds kWhile{100};
constexpr int kBySignal = 1000;

struct Plan {
    char direction = 0;
    std::string type;
    int number = 0;
    std::string place;
    std::string action;
};

// Each message is an object with its type, whose quotation marks are written otherwise within any text.
std::string typeOf(const std::string& line) {
    constexpr std::string_view kMark = R"("type":")";
    const std::size_t mark = line.find(kMark);
    const std::size_t begin = mark + kMark.size();
    return mark == std::string::npos ? "?" : line.substr(begin, line.find('"', begin) - begin);
}

class FaultyEngine {
public:
    explicit FaultyEngine(std::string folder)
        : folder_(std::move(folder)),
          host_(std::in_place, Descriptor(kEngineSocket), zqm::protocol::kMaxRequestLine) {
        ::fcntl(kEngineSocket, F_SETFD, FD_CLOEXEC);
        std::array<int, 2> ends{};
        ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data());
        engineProcess_ = ::fork();
        if (engineProcess_ == 0) {
            // A stopped one would outlive this process, which is killed in its place.
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            ::dup2(ends[1], kEngineSocket);
            ::execl(ZQM_ENGINE, ZQM_ENGINE, nullptr);
            ::_exit(127);
        }
        ::close(ends[1]);
        engine_.emplace(Descriptor(ends[0]), zqm::protocol::kMaxEventLine);
        tell("engine " + std::to_string(engineProcess_));
    }

    void run() {
        while (handOn('>', *host_, *engine_) && handOn('<', *engine_, *host_)) {
            std::array<pollfd, 2> watched{pollfd{host_->descriptor(), eventsOf(*host_), 0},
                                          pollfd{engine_->descriptor(), eventsOf(*engine_), 0}};
            ::poll(watched.data(), watched.size(), -1);
            host_->flush();
            engine_->flush();
        }
        finish();
    }

private:
    static short eventsOf(const Channel& channel) {
        return static_cast<short>(channel.backlog() > 0 ? POLLIN | POLLOUT : POLLIN);
    }

    void tell(const std::string& line) const {
        std::ofstream(folder_ + "/" + kTaleFile, std::ios::app) << line + "\n";
    }

    // What is there now. False: the conversation is over.
    bool handOn(char direction, Channel& from, Channel& to) {
        for (std::string line;;) {
            switch (from.read(line)) {
            case Channel::Input::Line:
                if (!handOn(direction, line + "\n", descriptorsOf(from), to)) {
                    return false;
                }
                break;
            case Channel::Input::Nothing:
                return true;
            default:
                sendAll(to);
                return false;
            }
        }
    }

    static std::vector<Descriptor> descriptorsOf(Channel& channel) {
        std::vector<Descriptor> descriptors;
        while (Descriptor descriptor = channel.takeDescriptor()) {
            descriptors.push_back(std::move(descriptor));
        }
        return descriptors;
    }

    bool handOn(char direction, const std::string& line, std::vector<Descriptor> descriptors, Channel& to) {
        const std::string type = typeOf(line);
        const std::optional<Plan> plan = planFor(direction, type);
        if (plan && plan->place == "before") {
            return doAsPlanned(plan->action, line, std::move(descriptors), to);
        }
        send(direction, type, line, std::move(descriptors), to);
        return !plan || doAsPlanned(plan->action, line, {}, to);
    }

    void send(char direction, const std::string& type, const std::string& line,
              std::vector<Descriptor> descriptors, Channel& to) const {
        tell(std::string(1, direction) + " " + type);
        to.send(line, std::move(descriptors));
        to.flush();
    }

    // The plan, if this is its place; then it is gone. What it counts begins with the first message that it
    // sees.
    std::optional<Plan> planFor(char direction, const std::string& type) {
        const std::string path = folder_ + "/" + kPlanFile;
        Plan plan;
        if (!(std::ifstream(path) >> plan.direction >> plan.type >> plan.number >> plan.place >>
              plan.action) ||
            plan.direction != direction || plan.type != type || seen_[{direction, type}]++ != plan.number ||
            ::unlink(path.c_str()) != 0) {
            return std::nullopt;
        }
        seen_.clear();
        return plan;
    }

    [[nodiscard]] std::string bytes() const {
        std::ifstream file(folder_ + "/" + kBytesFile, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // False: the conversation is over.
    bool doAsPlanned(const std::string& action, const std::string& line, std::vector<Descriptor> descriptors,
                     Channel& to) {
        if (action == "close") {
            return false;
        }
        if (action == "kill" || action == "end") {
            ::kill(engineProcess_, action == "kill" ? SIGKILL : SIGTERM);
            return false;
        }
        if (action == "stop") {
            ::kill(engineProcess_, SIGSTOP);
            ::raise(SIGSTOP);
            return true;
        }
        if (action == "half") {
            to.send(line.substr(0, line.size() / 2), std::move(descriptors));
            sendAll(to);
            return false;
        }
        if (action == "babble") {
            babble();
            return false;
        }
        if (action == "soil") {
            const std::string dirt = bytes();
            const bool soiled = !descriptors.empty() && ::write(descriptors.front().get(), dirt.data(),
                                                                dirt.size()) == ssize_t(dirt.size());
            tell(soiled ? "soiled" : "nothing to soil");
            ::kill(engineProcess_, SIGKILL);
            return false;
        }
        if (action == "slow") {
            std::this_thread::sleep_for(kWhile);
        } else if (action == "bare") {
            descriptors.clear();
        } else if (action == "laden") {
            sendAll(to);
            waitUntilTaken(to);
            return sendLaden(line, to);
        }
        if (action == "replace") {
            to.send(bytes());
        } else if (action != "drop") {
            to.send(line, std::move(descriptors));
        }
        if (action == "repeat") {
            to.send(line);
        }
        to.flush();
        return true;
    }

    // More than the host can read, of its first speech, until that is gone.
    void babble() {
        constexpr int kLines = 1000;
        std::string lines;
        for (int count = 0; count < kLines; ++count) {
            lines += zqm::protocol::encode(zqm::protocol::Phoneme{1, 1, 0});
        }
        while (host_->flush()) {
            host_->send(lines);
            sendAll(*host_);
        }
    }

    // What comes at one go with too many descriptors is refused with them.
    static void waitUntilTaken(const Channel& channel) {
        for (int waiting = 1; ::ioctl(channel.descriptor(), SIOCOUTQ, &waiting) == 0 && waiting > 0;) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    static bool sendLaden(const std::string& line, const Channel& to) {
        constexpr std::size_t kTooMany = Channel::kMaxDescriptors + 1;
        std::array<int, kTooMany> numbers{};
        numbers.fill(STDIN_FILENO);
        return zqm::support::sendWithDescriptors(to.descriptor(), line, numbers);
    }

    static void sendAll(Channel& channel) {
        while (channel.flush() && channel.backlog() > 0) {
            pollfd watched{channel.descriptor(), POLLOUT, 0};
            ::poll(&watched, 1, -1);
        }
    }

    // The host hears of the end only when the engine's is told.
    void finish() {
        engine_.reset();
        int status = 0;
        ::waitpid(engineProcess_, &status, 0);
        tell("ended " +
             std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : kBySignal + WTERMSIG(status)));
    }

    std::string folder_;
    std::optional<Channel> host_;
    std::optional<Channel> engine_;
    pid_t engineProcess_ = -1;
    std::map<std::pair<char, std::string>, int> seen_; // since the last fault
};

} // namespace

int main() {
    const char* const folder = std::getenv(kFaultFolder); // NOLINT(concurrency-mt-unsafe): one thread
    FaultyEngine(folder != nullptr ? folder : "").run();
    return 0;
}
