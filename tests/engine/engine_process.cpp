#include "tests/engine/engine_process.h"

#include "engine/protocol/temporary_name.h"
#include "tests/support/utf16.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace zqm::test {

using protocol::Channel;
using protocol::Descriptor;
using protocol::Event;

namespace {

std::vector<std::string> environmentWith(const Environment& changes) {
    std::map<std::string, std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string variable = *entry;
        const std::size_t equals = variable.find('=');
        variables[variable.substr(0, equals)] = variable.substr(equals + 1);
    }
    for (const auto& [name, value] : changes) {
        if (value) {
            variables[name] = *value;
        } else {
            variables.erase(name);
        }
    }
    std::vector<std::string> list;
    list.reserve(variables.size());
    for (const auto& [name, value] : variables) {
        list.push_back(name);
        list.back().append("=").append(value);
    }
    return list;
}

[[noreturn]] void fail(int error, const char* what) {
    throw std::system_error(error, std::generic_category(), what);
}

} // namespace

std::pair<Descriptor, Descriptor> socketPair() {
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        fail(errno, "socketpair");
    }
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

pid_t spawnEngine(int socket, int errors, const Environment& environment) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    // In this order: the one for errors may have the number that the socket is to have.
    if (errors >= 0) {
        posix_spawn_file_actions_adddup2(&actions, errors, STDERR_FILENO);
    }
    posix_spawn_file_actions_adddup2(&actions, socket, protocol::kEngineSocket);
    std::string program = ZQM_ENGINE;
    std::array<char*, 2> arguments{program.data(), nullptr};
    std::vector<std::string> variables = environmentWith(environment);
    std::vector<char*> pointers;
    pointers.reserve(variables.size() + 1);
    for (std::string& variable : variables) {
        pointers.push_back(variable.data());
    }
    pointers.push_back(nullptr);
    pid_t pid = -1;
    const int result =
        ::posix_spawn(&pid, program.c_str(), &actions, nullptr, arguments.data(), pointers.data());
    posix_spawn_file_actions_destroy(&actions);
    if (result != 0) {
        fail(result, "posix_spawn");
    }
    return pid;
}

EngineProcess::EngineProcess(const Environment& environment)
    : errors_(::memfd_create("errors", MFD_CLOEXEC)) {
    auto [ours, theirs] = socketPair();
    pid_ = spawnEngine(theirs.get(), errors_.get(), environment);
    channel_.emplace(std::move(ours), protocol::kMaxEventLine);
}

EngineProcess::EngineProcess(pid_t pid, Descriptor socket)
    : pid_(pid), channel_(std::in_place, std::move(socket), protocol::kMaxEventLine) {}

EngineProcess::~EngineProcess() {
    if (pid_ > 0) {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
}

void EngineProcess::pump(short events) {
    pollfd watched{channel_->descriptor(), events, 0};
    if (channel_->backlog() > 0) {
        watched.events |= POLLOUT;
    }
    if (::poll(&watched, 1, kDeadlineMilliseconds) == 0) {
        throw std::runtime_error("the engine hangs");
    }
    channel_->flush();
}

void EngineProcess::send(const protocol::Request& request, std::vector<Descriptor> descriptors) {
    queue(request, std::move(descriptors));
    channel_->flush();
}

void EngineProcess::queue(const protocol::Request& request, std::vector<Descriptor> descriptors) {
    channel_->send(protocol::encode(request), std::move(descriptors));
}

void EngineProcess::sendRaw(std::string_view bytes) {
    channel_->send(bytes);
    while (channel_->backlog() > 0) {
        pump(POLLOUT);
    }
}

void EngineProcess::flush() {
    while (channel_->backlog() > 0) {
        pump(POLLOUT);
    }
}

std::optional<Event> EngineProcess::next() {
    std::string line;
    for (;;) {
        switch (channel_->read(line)) {
        case Channel::Input::Line: {
            auto event = protocol::decodeEvent(line);
            if (!event) {
                throw std::runtime_error("no event: " + line);
            }
            return event;
        }
        case Channel::Input::Nothing:
            pump(POLLIN);
            break;
        case Channel::Input::End:
            return std::nullopt;
        case Channel::Input::Overlong:
        case Channel::Input::Overladen:
        case Channel::Input::Failed:
            throw std::runtime_error("the conversation with the engine broke");
        }
    }
}

std::vector<Event> EngineProcess::untilEnd(std::uint64_t utterance) {
    std::vector<Event> events;
    while (auto event = next()) {
        events.push_back(*event);
        const auto* const end = std::get_if<protocol::Finished>(&*event);
        const auto* const start = std::get_if<protocol::Started>(&*event);
        if ((end != nullptr && end->utterance == utterance) ||
            (start != nullptr && start->utterance == utterance && !start->error.empty())) {
            return events;
        }
    }
    throw std::runtime_error("the engine ended: " + errors());
}

void EngineProcess::hangUp() {
    channel_.reset();
}

int EngineProcess::wait() {
    constexpr int kBySignal = 1000;
    int status = 0;
    if (::waitpid(std::exchange(pid_, -1), &status, 0) < 0) {
        fail(errno, "waitpid");
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : kBySignal + WTERMSIG(status);
}

std::string EngineProcess::errors() const {
    std::string text(static_cast<std::size_t>(::lseek(errors_.get(), 0, SEEK_END)), '\0');
    const ssize_t count = ::pread(errors_.get(), text.data(), text.size(), 0);
    text.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
    return text;
}

protocol::Speak speak(std::uint64_t utterance, std::string text) {
    constexpr double kRate = 175;
    return {utterance, std::move(text), "gmw/en-US", {.rate = kRate, .volume = 1}};
}

Target::Target(const std::filesystem::path& folder, const std::string& name)
    : file(folder / name), temporary(folder / protocol::temporaryName(std::hash<std::string>{}(name))) {
    output.extension = std::filesystem::path(name).extension().string();
    output.extension.erase(0, 1);
    output.temporaryName = temporary.filename().string();
    output.finalName = name;
    constexpr mode_t kMode = 0644;
    descriptors.emplace_back(::open(temporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kMode));
    descriptors.emplace_back(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!descriptors[0] || !descriptors[1]) {
        fail(errno, temporary.c_str());
    }
}

std::vector<protocol::Word> wordsIn(const std::vector<Event>& events) {
    std::vector<protocol::Word> words;
    for (const Event& event : events) {
        if (const auto* const word = std::get_if<protocol::Word>(&event)) {
            words.push_back(*word);
        }
    }
    return words;
}

std::vector<std::string> cutOut(std::string_view text, const std::vector<Event>& events) {
    const std::u16string units = support::toUtf16(text);
    std::vector<std::string> words;
    for (const protocol::Word& word : wordsIn(events)) {
        words.push_back(support::toUtf8(support::cut(units, word.position, word.length)));
    }
    return words;
}

namespace {

// 0: of none.
std::uint64_t utteranceOf(const Event& event) {
    return std::visit(
        [](const auto& message) -> std::uint64_t {
            if constexpr (requires { message.utterance; }) {
                return message.utterance;
            } else {
                return 0;
            }
        },
        event);
}

} // namespace

std::optional<double> timeOf(const Event& event) {
    return std::visit(
        [](const auto& message) -> std::optional<double> {
            if constexpr (requires { message.at; }) {
                return message.at;
            } else {
                return std::nullopt;
            }
        },
        event);
}

std::vector<std::string> faults(const std::vector<Event>& events, std::uint64_t utterance) {
    std::vector<std::string> faults;
    std::uint64_t covered = 0;
    std::uint64_t last = 0;
    double time = 0;
    double timeOfLast = 0;
    for (std::size_t index = 0; index < events.size(); ++index) {
        const std::string place = " at " + std::to_string(index);
        if (const auto at = timeOf(events[index])) {
            if (*at < time) {
                faults.push_back("a time before the last one" + place);
            }
            time = *at;
        }
        if (const auto* const word = std::get_if<protocol::Word>(&events[index])) {
            if (word->utterance != utterance) {
                faults.push_back("a word of another utterance" + place);
            }
            if (word->position < covered) {
                faults.push_back("a word out of order" + place);
            }
            last = word->position;
            timeOfLast = word->at;
            covered = word->position + word->length;
        } else if (std::holds_alternative<protocol::Paused>(events[index])) {
            covered = last; // a word that was cut is told again
            time = timeOfLast;
        } else if (const auto* const start = std::get_if<protocol::Started>(&events[index])) {
            if (index != 0 || start->utterance != utterance) {
                faults.push_back("a surplus start" + place);
            }
        } else if (const auto* const end = std::get_if<protocol::Finished>(&events[index])) {
            if (index + 1 != events.size() || end->utterance != utterance) {
                faults.push_back("a surplus end" + place);
            }
        } else if (utteranceOf(events[index]) != utterance) {
            faults.push_back("an unexpected event" + place);
        }
    }
    if (events.empty() || !std::holds_alternative<protocol::Started>(events.front())) {
        faults.emplace_back("no start");
    }
    if (!finished(events)) {
        faults.emplace_back("no end");
    }
    return faults;
}

std::optional<protocol::Finished> finished(const std::vector<Event>& events) {
    if (events.empty() || !std::holds_alternative<protocol::Finished>(events.back())) {
        return std::nullopt;
    }
    return std::get<protocol::Finished>(events.back());
}

std::string startError(const std::vector<Event>& events) {
    const auto* const start = events.empty() ? nullptr : std::get_if<protocol::Started>(&events.front());
    return start == nullptr ? "nothing started" : start->error;
}

} // namespace zqm::test
