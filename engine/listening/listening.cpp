#include "engine/listening/listening.h"

#include "engine/listening/listening_rate.h"
#include "engine/listening/microphone.h"
#include "engine/listening/sound_file_input.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace zqm::engine {

namespace {

constexpr std::chrono::microseconds kForever{-1};

// Not in the middle of a character.
std::string shortened(std::string text) {
    std::size_t length = protocol::CommandsSet::kMaxMessageBytes;
    if (text.size() > length) {
        constexpr unsigned kKindOfByte = 0xC0;
        constexpr unsigned kContinuation = 0x80;
        while (length > 0 && (static_cast<unsigned char>(text[length]) & kKindOfByte) == kContinuation) {
            --length;
        }
        text.resize(length);
    }
    return text;
}

} // namespace

Listening::Listening(EventLoop& loop, SoundServer& server, pid_t host, ListenerMaker makeListener,
                     Reporter reporter)
    : loop_(loop), server_(server), makeListener_(std::move(makeListener)), report_(std::move(reporter)),
      meter_([this](double decibels) {
          report_(protocol::Level{session_->session, decibels});
      }),
      lock_(host) {}

Listening::~Listening() = default;

void Listening::setCommands(protocol::SetCommands request) {
    commands_ = std::move(request);
    isListNew_ = true;
}

void Listening::takeNewCommands() {
    if (!std::exchange(isListNew_, false) || !commands_) {
        return;
    }
    try {
        prepareListener();
    } catch (const std::runtime_error&) {
        return; // the next session is told why, or that it works by then
    }
}

void Listening::prepareListener() {
    if (!listener_) {
        listener_ = makeListener_();
        listener_->onCommandsSet([this](std::uint64_t list, const std::vector<UnusableCommand>& problems) {
            tellProblems(list, problems);
        });
        listener_->onHeard([this](const HeardPhrase& phrase) { tellPhrase(phrase); });
    }
    if (auto commands = std::exchange(commands_, std::nullopt)) {
        listener_->setCommands(commands->list, std::move(commands->commands));
    }
}

void Listening::begin(const protocol::Listen& request, protocol::Descriptor file) {
    end();
    session_ = request;
    file_ = std::move(file);
    open();
}

void Listening::open() {
    try {
        prepareListener();
    } catch (const std::runtime_error& error) {
        retry_ = Clock::now() + Microphone::kRetry;
        failed(error.what(), Remedy::NewEngine);
        return;
    }
    AudioTaker& taker = *this;
    if (session_->fromFile) {
        source_ = std::make_unique<SoundFileInput>(loop_, std::move(file_), taker);
    } else {
        source_ = std::make_unique<Microphone>(server_, taker);
    }
    source_->advance();
}

void Listening::stop(std::uint64_t session) {
    if (session_ && session_->session == session) {
        end();
    }
}

void Listening::end() {
    source_.reset();
    file_.reset();
    session_.reset();
    state_.reset();
    meter_.reset();
    taken_ = 0;
    shutOutUntil_ = 0;
    isCapturing_ = false;
    queueUp();
    if (listener_) {
        listener_->reset();
    }
}

void Listening::blockOthers(bool blocks) {
    blocks_ = blocks;
    queueUp();
}

// Who hears nothing doesn't keep others from being heard.
void Listening::queueUp() {
    if (blocks_ && isCapturing_) {
        lock_.join();
    } else {
        lock_.leave();
    }
}

void Listening::advance() {
    takeNewCommands();
    if (source_) {
        source_->advance();
    } else if (idleTime() == std::chrono::microseconds(0)) {
        open();
    }
}

std::chrono::microseconds Listening::idleTime() const {
    if (isListNew_) {
        return std::chrono::microseconds(0);
    }
    if (source_) {
        return source_->idleTime();
    }
    if (!session_ || session_->fromFile) {
        return kForever;
    }
    const auto rest = std::chrono::ceil<std::chrono::microseconds>(retry_ - Clock::now());
    return std::max(rest, std::chrono::microseconds(0));
}

void Listening::began() {
    isCapturing_ = true;
    queueUp();
    tellState("", Remedy::Time);
}

void Listening::take(std::span<const std::int16_t> samples) {
    queueUp();
    taken_ += samples.size();
    if (lock_.isShutOut()) {
        shutOutUntil_ = static_cast<double>(taken_) / kListeningRate;
    }
    listener_->take(samples);
    if (session_->reportsLevel) {
        meter_.take(samples);
    }
}

void Listening::failed(const std::string& reason, Remedy remedy) {
    if (std::exchange(isCapturing_, false)) {
        listener_->finish();
    }
    queueUp();
    tellState(reason, remedy);
}

void Listening::ended() {
    listener_->finish();
    isCapturing_ = false;
    queueUp();
    report_(protocol::EndOfInput{session_->session});
}

void Listening::tellState(const std::string& error, Remedy remedy) {
    if (state_ != error) {
        state_ = error;
        report_(protocol::Listening{session_->session, error, remedy == Remedy::NewEngine});
    }
}

void Listening::tellProblems(std::uint64_t list, const std::vector<UnusableCommand>& problems) {
    protocol::CommandsSet event{list, {}, problems.size()};
    for (const UnusableCommand& problem : problems) {
        if (event.problems.size() == protocol::CommandsSet::kMaxProblems) {
            break;
        }
        event.problems.push_back({problem.command, shortened(problem.reason)});
    }
    report_(event);
}

// While someone else has the floor, only that one is spoken to.
void Listening::tellPhrase(const HeardPhrase& phrase) {
    if (phrase.begin < shutOutUntil_) {
        return;
    }
    if (phrase.command) {
        report_(protocol::Heard{session_->session, phrase.list, *phrase.command, phrase.begin, phrase.end});
    } else {
        report_(protocol::Rejected{session_->session, phrase.begin, phrase.end});
    }
}

} // namespace zqm::engine
