#include "engine/engine.h"

#include "engine/error_output.h"
#include "engine/listening/transcriber.h"
#include "engine/output/file_output.h"
#include "engine/output/sound_output.h"
#include "engine/speaker/voices.h"

#include <array>
#include <csignal>
#include <cstring>
#include <memory>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace zqm::engine {

namespace {

// Nothing is to be done while nobody speaks or listens but what wakes the loop anyway.
constexpr std::chrono::microseconds kForever{-1};
constexpr std::chrono::microseconds kNow{0};

constexpr int kBadDictionary = -246;

constexpr const char* kNoDescriptors = "a request came without its descriptors";

// Counted from 0, as where the entry was given.
std::string describe(const LexiconProblem& problem) {
    return std::string(problem.isAbbreviation ? "Abbreviation " : "Pronunciation ") +
           std::to_string(problem.entry) + " of speech dictionary " + std::to_string(problem.dictionary) +
           ": " + problem.message;
}

// Told with the sound, in contrast to what answers a request or ends an utterance.
bool isHeard(const protocol::Event& event) {
    return std::holds_alternative<protocol::Word>(event) ||
           std::holds_alternative<protocol::Phoneme>(event) ||
           std::holds_alternative<protocol::Problem>(event) || std::holds_alternative<protocol::Sync>(event);
}

pid_t peerOf(int socket) {
    ucred credentials{};
    socklen_t length = sizeof credentials;
    const int result = ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &credentials, &length);
    return result == 0 ? credentials.pid : 0;
}

// The process that listens with this engine, and maybe with others.
pid_t hostOf(int socket) {
    for (const pid_t host : {peerOf(socket), ::getppid()}) {
        if (host > 0) {
            return host;
        }
    }
    return ::getpid(); // of another process namespace
}

// The signals that ask a program to end, from now on to be read from a descriptor: nothing half done shall be
// left behind.
protocol::Descriptor politeSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&signals, number);
    }
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    return protocol::Descriptor(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
}

} // namespace

Engine::Engine(protocol::Descriptor socket, const FilePlacer& placer)
    : channel_(std::move(socket), protocol::kMaxRequestLine), placer_(placer), signals_(politeSignals()),
      server_(loop_.api()), listening_(
                                loop_, server_, hostOf(channel_.descriptor()),
                                [this] { return std::make_unique<Listener>(englishTranscriber(speaker_)); },
                                [this](const protocol::Event& event) { report(event); }) {
    loop_.watch(channel_.descriptor(), [this] { readRequests(); });
    if (signals_) {
        loop_.watch(signals_.get(), [this] { quit(kExitOk); });
    }
    watchHost();
}

int Engine::run() {
    while (!exitCode_) {
        loop_.run(idleTime());
        if (utterance_ && !exitCode_) {
            utterance_->advance();
            dropIfOver();
        }
        if (!exitCode_) {
            listening_.advance();
        }
        flush();
    }
    utterance_.reset();
    return *exitCode_;
}

std::chrono::microseconds Engine::idleTime() const {
    const std::chrono::microseconds speaking = utterance_ ? utterance_->idleTime() : kForever;
    const std::chrono::microseconds listening = listening_.idleTime();
    if (speaking < kNow || listening < kNow) {
        return std::max(speaking, listening);
    }
    return std::min(speaking, listening);
}

// A fork of the host may keep the socket open beyond the host's end. The peer is asked too because the host
// may have ended before this program could see it as its parent.
void Engine::watchHost() {
    for (const pid_t host : {::getppid(), peerOf(channel_.descriptor())}) {
        if (host <= 0) {
            continue; // of another process namespace
        }
        protocol::Descriptor descriptor(static_cast<int>(::syscall(SYS_pidfd_open, host, 0)));
        if (descriptor) {
            loop_.watch(descriptor.get(), [this] { quit(kExitOk); });
            hosts_.push_back(std::move(descriptor));
        } else if (errno == ESRCH) {
            quit(kExitOk);
        }
    }
}

void Engine::quit(int exitCode) {
    if (!exitCode_) {
        exitCode_ = exitCode;
    }
}

void Engine::fail(const char* reason, int exitCode) {
    tellError(reason);
    quit(exitCode);
}

void Engine::refuse(const char* reason) {
    fail(reason, kExitBadConversation);
}

void Engine::readRequests() {
    flush();
    std::string line;
    while (!exitCode_) {
        switch (channel_.read(line)) {
        case protocol::Channel::Input::Line:
            if (auto request = protocol::decodeRequest(line)) {
                std::visit([this](auto& message) { handle(message); }, *request);
            } else {
                refuse("what the host sent is no request");
            }
            break;
        case protocol::Channel::Input::Nothing:
            return;
        case protocol::Channel::Input::End:
            quit(kExitOk);
            return;
        case protocol::Channel::Input::Overlong:
            refuse("what the host sent is too long for a request");
            return;
        case protocol::Channel::Input::Overladen:
            refuse("what the host sent has more descriptors than any request needs");
            return;
        case protocol::Channel::Input::Failed:
            refuse(std::strerror(channel_.error()));
            return;
        }
    }
}

void Engine::handle(const protocol::ListVoices&) {
    report(protocol::Voices{speaker_.voices(), kSynthesizer, synthesizerVersion()});
}

void Engine::handle(protocol::Speak& request) {
    if (utterance_) {
        utterance_->stop(protocol::Boundary::Immediate);
        utterance_.reset();
    }
    lastUtterance_ = request.utterance;
    protocol::Descriptor file;
    protocol::Descriptor folder;
    if (request.output) {
        file = channel_.takeDescriptor();
        if (!request.output->temporaryName.empty()) {
            folder = channel_.takeDescriptor();
        }
        if (!file || (!folder && !request.output->temporaryName.empty())) {
            refuse(kNoDescriptors);
            return;
        }
    }
    if (folder && placer_.hasEnded()) {
        fail("the process for files has ended", kExitFailure); // the next start has another engine
        return;
    }
    std::unique_ptr<Output> output;
    if (request.output) {
        output = std::make_unique<FileOutput>(loop_, placer_, std::move(*request.output), std::move(file),
                                              std::move(folder), speaker_.sampleRate());
    }
    const protocol::Voice* const voice = speaker_.findVoice(request.voice);
    if (voice == nullptr || !speaker_.setVoice(*voice)) {
        output.reset();
        report(protocol::Started{request.utterance, "there is no voice \"" + request.voice + "\""});
        return;
    }
    readLexicon();
    if (!output && !request.text.empty()) {
        output = std::make_unique<SoundOutput>(server_, speaker_.sampleRate());
    }
    utterance_.emplace(std::move(request), *voice, speaker_, std::move(output),
                       [this](const protocol::Event& event, bool moreFollow) { report(event, moreFollow); });
    for (const LexiconProblem& problem : std::exchange(lexiconProblems_, {})) {
        utterance_->announce(protocol::Problem{utterance_->number(), kBadDictionary, 0, describe(problem)});
    }
    utterance_->advance();
    dropIfOver();
}

void Engine::dropIfOver() {
    if (utterance_->isOver()) {
        utterance_.reset();
    }
}

bool Engine::isSpeaking(std::uint64_t utterance) const {
    return utterance_ && utterance_->number() == utterance;
}

// What is not on its way yet of what was heard is of no interest any more.
void Engine::handle(const protocol::Stop& request) {
    if (request.boundary == protocol::Boundary::Immediate && request.utterance == lastUtterance_) {
        channel_.dropExpendable();
    }
    if (isSpeaking(request.utterance)) {
        utterance_->stop(request.boundary);
        dropIfOver();
    }
}

void Engine::handle(const protocol::Adjust& request) {
    if (isSpeaking(request.utterance)) {
        utterance_->adjust(request.manner);
    }
}

void Engine::handle(const protocol::Pause& request) {
    if (isSpeaking(request.utterance)) {
        utterance_->pause(request.boundary);
    }
}

void Engine::handle(const protocol::Continue& request) {
    if (isSpeaking(request.utterance)) {
        utterance_->resume();
    }
}

void Engine::handle(protocol::SetLexicon& request) {
    lexicon_ = std::move(request);
}

// Once a voice is set.
void Engine::readLexicon() {
    if (lexicon_) {
        lexiconProblems_ = speaker_.setLexicon(std::move(lexicon_->dictionaries));
        lexicon_.reset();
    }
}

void Engine::handle(const protocol::GetPhonemes& request) {
    std::string phonemes;
    const protocol::Voice* const voice = speaker_.findVoice(request.voice);
    if (voice != nullptr && speaker_.setVoice(*voice)) {
        readLexicon();
        phonemes = speaker_.phonemes(request.text, *voice, request.manner);
    }
    report(protocol::Phonemes{phonemes});
}

void Engine::handle(const protocol::Ping&) {
    report(protocol::Pong{});
}

void Engine::handle(protocol::SetCommands& request) {
    listening_.setCommands(std::move(request));
}

void Engine::handle(const protocol::Listen& request) {
    protocol::Descriptor file = request.fromFile ? channel_.takeDescriptor() : protocol::Descriptor();
    if (request.fromFile && !file) {
        refuse(kNoDescriptors);
        return;
    }
    listening_.begin(request, std::move(file));
}

void Engine::handle(const protocol::BlockOthers& request) {
    listening_.blockOthers(request.blocks);
}

void Engine::handle(const protocol::StopListening& request) {
    listening_.stop(request.session);
}

// Sending costs more than what is sent, so what belongs together is sent together.
void Engine::report(const protocol::Event& event, bool moreFollow) {
    if (isHeard(event)) {
        channel_.sendExpendable(protocol::encode(event));
    } else {
        channel_.send(protocol::encode(event));
    }
    if (!moreFollow) {
        flush();
    }
}

void Engine::flush() {
    channel_.flush();
    loop_.wantWritable(channel_.descriptor(), channel_.backlog() > 0);
}

} // namespace zqm::engine
