// Where the sound of an utterance goes: to the listener, or into a file.

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

namespace zqm::engine {

// Destroyed before it was finished or stopped, an output leaves nothing behind.
class Output {
public:
    enum class State {
        Opening, // takes no samples yet
        Open,
        Ended,  // all is heard, or the file is whole
        Failed, // for good, see error()
    };

    Output() = default;
    virtual ~Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // Looks at how things stand with the device; to be called before any of the questions below.
    virtual void update() {}

    [[nodiscard]] State state() const { return state_; }
    [[nodiscard]] const std::string& error() const { return error_; }

    // How many samples it takes now.
    [[nodiscard]] virtual std::size_t room() const = 0;
    virtual void write(std::span<const std::int16_t> samples) = 0;

    // Samples that the listener has heard, or that are in the file.
    [[nodiscard]] virtual std::uint64_t heard() const = 0;

    // No more samples follow: ends once all are heard.
    virtual void finish() = 0;

    // Whether it is heard while it is written. What was written and is not heard yet can then be taken back:
    // silence plays in its place, and the next samples go there. And it can make room for others for a while;
    // after that it is opening again, and what is heard is counted from nothing.
    [[nodiscard]] virtual bool isLive() const { return false; }
    virtual void truncate(std::uint64_t /*samples*/) {}
    virtual void pause() {}
    virtual void resume() {}

    // Ends now, with what is heard or written so far.
    virtual void stop() = 0;

protected:
    void become(State state) { state_ = state; }
    void failWith(std::string error) {
        error_ = std::move(error);
        state_ = State::Failed;
    }

private:
    State state_ = State::Opening;
    std::string error_;
};

} // namespace zqm::engine
