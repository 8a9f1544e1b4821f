#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/process.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

namespace zqm::support {

inline constexpr int kPulseRate = 44100;
inline constexpr const char* kPulseSink = "zqm";

// A PulseAudio server of the test's own, with one null sink of 16 bits, which plays in real time and is heard
// only through its monitor. It reads no configuration of the user, keeps everything in a folder of its own,
// and ends with the test whatever becomes of that.
class PulseServer {
public:
    // Returns once the server answers; throws std::runtime_error with the server's own words when it
    // doesn't.
    explicit PulseServer(int rate = kPulseRate, int channels = 2);

    // What its clients need in their environment.
    std::map<std::string, std::optional<std::string>> environment() const;
    // PULSE_SERVER of that.
    const std::string& address() const { return address_; }
    int rate() const { return rate_; }
    int channels() const { return channels_; }

    // What `pactl` with these arguments prints; throws std::runtime_error when it fails.
    std::string control(const std::vector<std::string>& arguments) const;
    // Another null sink, or another of that name.
    void addSink(const std::string& name) const;
    void removeSink(const std::string& name) const;

    // Ends it with SIGKILL, as if it had crashed; its socket stays behind.
    void kill();
    // Stops it with SIGSTOP: it answers nobody any more, but takes connections.
    void freeze();
    void thaw();
    // Starts it again on the same address, after kill() or freeze().
    void restart();

private:
    void start();
    bool answers() const;
    std::string describe(const std::string& sink) const;

    int rate_;
    int channels_;
    TemporaryFolder folder_;
    std::string address_;
    std::unique_ptr<Process> server_;
};

// Makes a server the one of this process and of the children that inherit its environment.
class ScopedPulseServer {
public:
    explicit ScopedPulseServer(const PulseServer& server);
    // An address at which nothing answers.
    static std::string unreachableAddress() { return "unix:/nonexistent/zqm-test/pulse"; }
    explicit ScopedPulseServer(const std::string& address);

private:
    ScopedEnvironment address_;
    ScopedEnvironment cookie_;
};

} // namespace zqm::support
