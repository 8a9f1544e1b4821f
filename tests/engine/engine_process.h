// An engine program run by a test, and the test's end of the conversation with it.

#pragma once

#include "engine/protocol/channel.h"
#include "engine/protocol/protocol.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace zqm::test {

using Environment = std::map<std::string, std::optional<std::string>>;

// A socket pair; both ends are closed on exec.
std::pair<protocol::Descriptor, protocol::Descriptor> socketPair();

// Starts the engine program with the socket as its descriptor 3 and, if there is one, errors as its 2.
pid_t spawnEngine(int socket, int errors, const Environment& environment = {});

class EngineProcess {
public:
    // Far longer than anything takes: reached only when something hangs, and then the test fails.
    static constexpr int kDeadlineMilliseconds = 120'000;

    explicit EngineProcess(const Environment& environment = {});
    // One that another process started, which also waits for its end and has its errors.
    EngineProcess(pid_t pid, protocol::Descriptor socket);
    // Kills the engine, if it still runs.
    ~EngineProcess();
    EngineProcess(const EngineProcess&) = delete;
    EngineProcess& operator=(const EngineProcess&) = delete;

    [[nodiscard]] pid_t pid() const { return pid_; }

    void send(const protocol::Request& request, std::vector<protocol::Descriptor> descriptors = {});
    // Goes with the next request that is sent: the engine reads both at one go, however busy the machine is.
    void queue(const protocol::Request& request, std::vector<protocol::Descriptor> descriptors = {});
    void sendRaw(std::string_view bytes);

    // Sends what is queued without waiting for room.
    void flush();

    // The next event; none at the end of the conversation.
    std::optional<protocol::Event> next();
    // The next event of a kind, leaving out others.
    template <typename Message>
    std::optional<Message> nextOf() {
        while (auto event = next()) {
            if (auto* const message = std::get_if<Message>(&*event)) {
                return *message;
            }
        }
        return std::nullopt;
    }
    // Events up to and with the last of an utterance: its "finished", or a "started" with an error.
    std::vector<protocol::Event> untilEnd(std::uint64_t utterance);

    // Ends the conversation, as a host does that ends.
    void hangUp();

    // Waits for its end. The exit code; 1000 and the signal when one ended it.
    int wait();
    // What it wrote to its standard error so far.
    [[nodiscard]] std::string errors() const;

private:
    void pump(short events);

    pid_t pid_ = -1;
    protocol::Descriptor errors_;
    std::optional<protocol::Channel> channel_;
};

// ---- requests

protocol::Speak speak(std::uint64_t utterance, std::string text);

// The descriptors and the names for writing into a folder, as a host does it.
struct Target {
    // Makes the temporary file.
    Target(const std::filesystem::path& folder, const std::string& name);

    protocol::Output output;
    std::vector<protocol::Descriptor> descriptors;
    std::filesystem::path file;
    std::filesystem::path temporary;
};

// ---- what came

std::vector<protocol::Word> wordsIn(const std::vector<protocol::Event>& events);
std::vector<std::string> cutOut(std::string_view text, const std::vector<protocol::Event>& events);

// In the utterance's sound; nothing: it has none.
std::optional<double> timeOf(const protocol::Event& event);

// Everything wrong with the events of one utterance: their order, their number, their words, their times.
std::vector<std::string> faults(const std::vector<protocol::Event>& events, std::uint64_t utterance);

// The "finished" at the end, if that is what stands there.
std::optional<protocol::Finished> finished(const std::vector<protocol::Event>& events);
// The error of the "started" at the beginning; none: it began.
std::string startError(const std::vector<protocol::Event>& events);

} // namespace zqm::test
