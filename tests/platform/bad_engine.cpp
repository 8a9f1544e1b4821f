// Engines that misbehave, for the tests of what the platform library does then. ZQM_BAD_ENGINE says how.

#include "engine/protocol/channel.h"
#include "engine/protocol/protocol.h"

#include <cstdlib>
#include <poll.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <variant>

namespace {

using namespace zqm::protocol;

// The first descriptor that comes with a message, as nothing takes it out of that.
constexpr int kPassed = kEngineSocket + 1;

bool isFileBegun() {
    struct stat status {};
    return ::fstat(kPassed, &status) == 0 && S_ISREG(status.st_mode) &&
           (status.st_size != 0 || ::lseek(kPassed, 0, SEEK_CUR) != 0);
}

class BadEngine {
public:
    explicit BadEngine(std::string fault)
        : fault_(std::move(fault)), channel_(Descriptor(kEngineSocket), kMaxRequestLine) {}

    void run() {
        if (fault_ == "close at once") {
            ::_exit(0); // as others here: a sanitizer that is killed at the end says so where the host speaks
        }
        if (fault_ == "deaf") {
            sleepForEver();
        }
        for (std::string line;;) {
            switch (channel_.read(line)) {
            case Channel::Input::Line:
                answer(*decodeRequest(line));
                break;
            case Channel::Input::Nothing:
                waitFor(POLLIN);
                break;
            default:
                if (fault_ == "stubborn") {
                    sleepForEver();
                }
                return;
            }
        }
    }

private:
    [[noreturn]] static void sleepForEver() {
        for (;;) {
            ::pause();
        }
    }

    void waitFor(short condition) const {
        pollfd watched{channel_.descriptor(), condition, 0};
        ::poll(&watched, 1, -1);
    }

    void say(std::string_view line) {
        channel_.send(line);
        while (channel_.flush() && channel_.backlog() > 0) {
            waitFor(POLLOUT);
        }
    }

    void answer(const Request& request) {
        if (std::holds_alternative<ListVoices>(request)) {
            listVoices();
        } else if (const auto* const speak = std::get_if<Speak>(&request)) {
            answerSpeak(speak->utterance);
        } else if (const auto* const pause = std::get_if<Pause>(&request)) {
            say(encode(Paused{pause->utterance}));
        } else if (std::holds_alternative<GetPhonemes>(request)) {
            tellPhonemes();
        }
    }

    void tellPhonemes() {
        if (fault_ == "die on phonemes") {
            ::_exit(1);
        }
        say(fault_ == "something else for phonemes" ? encode(Voices{}) : encode(Phonemes{"_d1AOg."}));
    }

    void listVoices() {
        if (fault_ == "no voices reply") {
            sleepForEver();
        } else if (fault_ == "garbage for voices") {
            say("voices, voices\n");
        } else if (fault_ == "end instead of voices") {
            ::_exit(1);
        } else if (fault_ == "something else for voices") {
            say(encode(Started{1, ""}));
        } else if (fault_ == "no voices") {
            say(encode(Voices{}));
        } else {
            say(encode(Voices{{{"test/a", "A", "en-US", "female", 33}, {"test/b", "B", "de", "neuter", 0}}}));
        }
    }

    void answerSpeak(std::uint64_t utterance) {
        ++requests_;
        if (fault_ == "mute") {
            return;
        }
        if (fault_ == "die on request") {
            ::_exit(1);
        }
        if (fault_ == "die in a file" && requests_ == 2) {
            ::_exit(::write(kPassed, "RIFF", 4) == 4 ? 1 : 2);
        }
        if (isFileBegun()) {
            say(encode(Started{utterance, "somebody has begun the file"}));
            return;
        }
        if (fault_ == "garbage on request") {
            say("{\"type\":\n");
            return;
        }
        if (fault_ == "refuse") {
            say(encode(Started{utterance, "the reason"}));
            return;
        }
        if (fault_ == "finish a future utterance") {
            say(encode(Finished{utterance + 1, true, ""}));
            return;
        }
        say(encode(Started{utterance, ""}) + encode(Word{utterance, 0, 5}));
        misbehaveAmidSpeech(utterance);
        if (fault_.empty() || fault_ == "stubborn" || fault_ == "die in a file" ||
            (fault_ == "fail once" && requests_ > 1)) {
            say(encode(Finished{utterance, true, ""}));
        }
    }

    void misbehaveAmidSpeech(std::uint64_t utterance) {
        if (fault_ == "die") {
            ::_exit(1);
        } else if (fault_ == "abort") {
            std::abort();
        } else if (fault_ == "garbage") {
            say("no message\n");
        } else if (fault_ == "overlong") {
            say(std::string(kMaxEventLine + 1, 'x'));
        } else if (fault_ == "unfinished line") {
            say("{\"type\":\"fin");
            ::_exit(0);
        } else if (fault_ == "word beyond the end") {
            say(encode(Word{utterance, 6, 6}));
        } else if (fault_ == "word at a huge place") {
            say(encode(Word{utterance, ~std::uint64_t{0}, 1}));
        } else if (fault_ == "word backwards") {
            say(encode(Word{utterance, 4, 2}));
        } else if (fault_ == "word of no length") {
            say(encode(Word{utterance, 6, 0}));
        } else if (fault_ == "word of a future utterance") {
            say(encode(Word{utterance + 7, 6, 5}));
        } else if (fault_ == "phoneme of a future utterance") {
            say(encode(Phoneme{utterance + 1, 2}));
        } else if (fault_ == "problem beyond the text") {
            say(encode(Problem{utterance, -245, 12, "what"}));
        } else if (fault_ == "pause of a future utterance") {
            say(encode(Paused{utterance + 1}));
        } else if (fault_ == "going on unasked") {
            say(encode(Continued{utterance}));
        } else if (fault_ == "phonemes unasked") {
            say(encode(Phonemes{"_d1AOg."}));
        } else if (fault_ == "start twice") {
            say(encode(Started{utterance, ""}));
        } else if (fault_ == "voices unasked") {
            say(encode(Voices{}));
        } else if (fault_ == "fail" || (fault_ == "fail once" && requests_ == 1)) {
            say(encode(Finished{utterance, false, "the disk is full"}));
        }
    }

    std::string fault_;
    int requests_ = 0;
    Channel channel_;
};

} // namespace

int main() {
    const char* const fault = std::getenv("ZQM_BAD_ENGINE"); // NOLINT(concurrency-mt-unsafe): one thread
    BadEngine(fault != nullptr ? fault : "").run();
    return 0;
}
