#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace zqm::cli {

struct ListeningEvent {
    enum class Kind {
        Began,       // sound arrives
        Failed,      // none does, for this reason
        Level,       // how loud it is
        Recognized,  // a phrase that is a command; its recognizer raises its own event next
        Rejected,    // a phrase that is none of the commands
        Ended,       // all of a sound file was heard
        Refused,     // a command that can't be listened for, for this reason
        MoreRefused, // so many more can't be, of which nothing else is told
    };
    Kind kind;
    double begin; // of a phrase, in seconds of sound
    double end;
    double decibels;
    std::string_view command;
    std::string_view reason;
    std::size_t count;
};

// Is told in the run loop what the platform tells of listening beyond the commands that it recognises: all of
// it on Linux, nothing on macOS. One at a time.
class ListeningObserver {
public:
    using Handler = std::function<void(const ListeningEvent&)>;

    explicit ListeningObserver(Handler handler);
    ListeningObserver(const ListeningObserver&) = delete;
    ListeningObserver& operator=(const ListeningObserver&) = delete;
    ~ListeningObserver();

private:
    Handler handler_;
};

// Makes what starts to listen from now on hear this sound file instead of the microphone. Throws Failure
// where the platform can't.
void listenToFile(const std::string& path);

} // namespace zqm::cli
