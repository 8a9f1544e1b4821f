// Ways to let the recognizer hear phrases.

#pragma once

#include "bench/recognition/outcome.h"
#include "bench/recognition/phrase.h"
#include "tests/support/command_listener.h"
#include "tests/support/monitor_recording.h"
#include "tests/support/pulse_server.h"
#include "tests/support/temporary_folder.h"

#include <string>
#include <sys/types.h>
#include <vector>

namespace zqm::recognition {

class Run {
public:
    virtual ~Run() = default;
    virtual void hear(const Phrase& phrase) = 0;
    // Of all phrases heard. Throws std::runtime_error where something else than the recognizer went wrong.
    virtual std::vector<Outcome> outcomes() const = 0;
};

// Each from a sound file of it, as fast as that can be read.
class FileRun : public Run {
public:
    FileRun(host::Runtime& runtime, const std::vector<std::string>& commands);
    void hear(const Phrase& phrase) override;
    std::vector<Outcome> outcomes() const override { return outcomes_; }

private:
    host::Runtime& runtime_;
    support::TemporaryFolder folder_;
    support::CommandListener listener_;
    std::vector<Outcome> outcomes_;
};

// Played into the server's null sink, and heard through its monitor.
class LiveRun : public Run {
public:
    LiveRun(host::Runtime& runtime, const support::PulseServer& server,
            const std::vector<std::string>& commands);
    void hear(const Phrase& phrase) override;
    std::vector<Outcome> outcomes() const override;

private:
    struct Played {
        Phrase phrase;
        double begin = 0; // monotonicSeconds()
        double end = 0;
        double processorSeconds = 0;
        std::size_t firstAnswer = 0;
    };

    const std::vector<support::CommandListener::Answer>& answers() const { return listener_.answers(); }
    Outcome outcomeOf(const Played& played, std::size_t answersEnd) const;

    host::Runtime& runtime_;
    const support::PulseServer& server_;
    support::MonitorRecording recording_;
    support::CommandListener listener_;
    pid_t engine_;
    std::vector<Played> played_;
};

} // namespace zqm::recognition
