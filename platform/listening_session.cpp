#include "platform/listening_session.h"

#include "platform/ending_engines.h"
#include "platform/listening_file.h"

#include <algorithm>
#include <chrono>
#include <type_traits>
#include <utility>

namespace zqm::platform {
namespace {

using std::chrono::milliseconds;

constexpr const char* kForked = "the recognizer belongs to the process that this one was forked from";

// Between the engines that are tried; the first one that is lost is replaced at once.
constexpr milliseconds kFirstPause{100};
constexpr milliseconds kLongestPause{5000};

// How long an engine without a microphone is kept, which tries again by itself: one that began before there
// was a sound server may never reach it. The next ones are kept longer, since making one ready may be much
// work.
constexpr milliseconds kFirstPatience{10'000};
constexpr milliseconds kLongestPatience{600'000};

// A microphone is listened to for ever; a file that ends so many engines is to blame itself.
constexpr std::size_t kMostLossesOfFile = 5;

milliseconds pauseAfter(std::size_t losses) {
    milliseconds pause = kFirstPause;
    for (std::size_t count = 1; count < losses && pause < kLongestPause; ++count) {
        pause *= 2;
    }
    return std::min(pause, kLongestPause);
}

} // namespace

void ListeningSession::start(std::optional<std::string> file) {
    if (!engine_.isOurs()) {
        log_(std::string("Listening can't be started: ") + kForked);
        return;
    }
    takeMessages();
    if (isListening_) {
        return;
    }
    isListening_ = true;
    ++session_;
    file_ = std::move(file);
    heardUntil_ = 0;
    isOver_ = false;
    losses_ = 0;
    patience_ = kFirstPatience;
    state_.reset();
    begin();
    takeMessages();
}

void ListeningSession::begin() {
    std::string error;
    std::vector<protocol::Descriptor> descriptors;
    if (file_) {
        protocol::Descriptor descriptor = openListeningFile(*file_, error);
        if (!descriptor) {
            giveUp(error);
            return;
        }
        descriptors.push_back(std::move(descriptor));
    }
    if (!openEngine(error)) {
        retryLater(error);
        return;
    }
    engine_.post(protocol::Listen{.session = session_,
                                  .reportsLevel = isListeningObserved(),
                                  .fromFile = file_.has_value()},
                 std::move(descriptors));
}

bool ListeningSession::openEngine(std::string& error) {
    if (engine_.isOpen()) {
        return true;
    }
    if (!engine_.open(error)) {
        return false;
    }
    if (blocksOthers_) {
        engine_.post(protocol::BlockOthers{true});
    }
    postCommands();
    return true;
}

void ListeningSession::postCommands() {
    if (!lists_.empty()) {
        engine_.post(protocol::SetCommands{lists_.back()->number, lists_.back()->texts});
    }
}

void ListeningSession::stop() {
    if (!engine_.isOurs() || !isListening_) {
        return;
    }
    isListening_ = false; // an engine whose end is noticed only now is not replaced
    isToBeReplaced_ = false;
    timer_.stop();
    takeMessages();
    events_.clear();
    if (engine_.isOpen()) {
        engine_.post(protocol::StopListening{session_});
    }
    engine_.tellHub(false);
}

void ListeningSession::setCommands(std::vector<std::string> texts, std::shared_ptr<const void> own) {
    takeMessages();
    lists_.push_back(
        std::make_shared<const CommandList>(CommandList{++lastList_, std::move(texts), std::move(own)}));
    if (engine_.isOurs() && engine_.isOpen()) {
        postCommands();
    } else {
        lists_.erase(lists_.begin(), lists_.end() - 1);
    }
}

void ListeningSession::setBlocksOthers(bool blocks) {
    if (std::exchange(blocksOthers_, blocks) != blocks && engine_.isOurs() && engine_.isOpen()) {
        engine_.post(protocol::BlockOthers{blocks});
    }
}

void ListeningSession::takeMessages() {
    if (!engine_.isOurs()) {
        return;
    }
    EndingEngines::shared().takeMessages();
    const bool isTime = timer_.takeExpiry();
    const bool isTimeToReplace = isTime && isToBeReplaced_;
    if (isTime && !isTimeToReplace) {
        begin();
    }
    const char* const failure = engine_.read([&](const protocol::Event& event) { return accept(event); });
    if (failure != nullptr) {
        loseEngine(failure);
    } else if (isTimeToReplace && isToBeReplaced_) {
        replace();
    }
    engine_.supervise(isListening_ && !isOver_);
    engine_.tellHub(!events_.empty());
}

std::optional<ListeningEvent> ListeningSession::nextEvent() {
    if (engine_.mayHaveMore()) {
        takeMessages();
    }
    std::optional<ListeningEvent> event;
    if (!events_.empty()) {
        event = std::move(events_.front());
        events_.pop_front();
    }
    engine_.tellHub(!events_.empty());
    return event;
}

// With an engine what the lists before the newest were for is gone.
void ListeningSession::forgetFormerLists() {
    if (!lists_.empty()) {
        lists_.erase(lists_.begin(), lists_.end() - 1);
    }
}

void ListeningSession::loseEngine(const char* reason) {
    engine_.lose();
    keepEngine();
    forgetFormerLists();
    if (!isListening_ || isOver_) {
        return;
    }
    if (losses_ > 0) {
        retryLater(reason);
        return;
    }
    ++losses_;
    log_(std::string(reason) + "; another one goes on listening");
    if (!file_ && isCapturing()) {
        state_.reset(); // its time begins again, so that is told again
    }
    begin();
}

void ListeningSession::retryLater(const std::string& reason) {
    ++losses_;
    if (file_ && losses_ > kMostLossesOfFile) {
        giveUp(*file_ + ": " + reason + " again and again");
        return;
    }
    reportFailure(reason);
    timer_.start(pauseAfter(losses_));
}

void ListeningSession::replaceLater() {
    if (!std::exchange(isToBeReplaced_, true)) {
        timer_.start(patience_);
        patience_ = std::min(2 * patience_, kLongestPatience);
    }
}

void ListeningSession::replace() {
    keepEngine();
    engine_.close();
    forgetFormerLists();
    begin();
}

void ListeningSession::keepEngine() {
    if (std::exchange(isToBeReplaced_, false)) {
        timer_.stop();
    }
}

void ListeningSession::giveUp(const std::string& reason) {
    isOver_ = true;
    reportFailure(reason);
}

void ListeningSession::reportFailure(const std::string& reason) {
    if (state_ == reason) {
        return;
    }
    state_ = reason;
    log_("Nothing can be heard: " + reason);
    observe({.kind = ZQMListeningFailed, .reason = reason});
}

bool ListeningSession::accept(const protocol::Event& event) {
    return std::visit(
        [&]<typename Message>(const Message& message) {
            if constexpr (std::is_same_v<Message, protocol::CommandsSet>) {
                return acceptCommands(message);
            } else if constexpr (requires { hear(message); }) {
                // Of others it was said before the engine heard of their end.
                const bool isOfCurrent = isListening_ && !isOver_ && message.session == session_;
                return isOfCurrent ? hear(message) : message.session <= session_;
            } else {
                return false; // it is not said without being asked for
            }
        },
        event);
}

bool ListeningSession::acceptCommands(const protocol::CommandsSet& set) {
    const auto found = findList(set.list);
    if (found == lists_.end()) {
        return false;
    }
    lists_.erase(lists_.begin(), found);
    const std::vector<std::string>& texts = lists_.front()->texts;
    if (set.refused > texts.size()) {
        return false;
    }
    const bool isNews = set.list > lastJudgedList_; // to a new engine the list was given again
    lastJudgedList_ = set.list;
    for (const protocol::CommandProblem& problem : set.problems) {
        if (problem.command >= texts.size()) {
            return false;
        }
        if (isNews) {
            const std::string& command = texts[problem.command];
            log_("\"" + command + "\" can't be listened for: " + problem.message);
            observe({.kind = ZQMListeningCommandRefused, .command = command, .reason = problem.message});
        }
    }
    const std::size_t more = set.refused - set.problems.size();
    if (isNews && more > 0) {
        log_(std::to_string(more) + " more of the commands can't be listened for");
        observe({.kind = ZQMListeningMoreCommandsRefused, .count = more});
    }
    return true;
}

bool ListeningSession::hear(const protocol::Listening& listening) {
    if (!listening.error.empty()) {
        if (file_) {
            giveUp(*file_ + ": " + listening.error);
        } else {
            reportFailure(listening.error);
            if (listening.wantsNewEngine) {
                replaceLater();
            } else {
                keepEngine();
            }
        }
        return true;
    }
    keepEngine();
    patience_ = kFirstPatience;
    if (!isCapturing()) {
        state_ = std::string();
        observe({.kind = ZQMListeningBegan});
    }
    return true;
}

bool ListeningSession::hear(const protocol::Heard& heard) {
    const auto list = findList(heard.list);
    if (list == lists_.end() || heard.command >= (*list)->texts.size()) {
        return false;
    }
    if (isNewPhrase(heard.end)) {
        observe({.kind = ZQMListeningRecognized,
                 .begin = heard.begin,
                 .end = heard.end,
                 .command = (*list)->texts[heard.command]});
        events_.emplace_back(HeardCommand{*list, heard.command});
    }
    return true;
}

bool ListeningSession::hear(const protocol::Rejected& rejected) {
    if (isNewPhrase(rejected.end)) {
        observe({.kind = ZQMListeningRejected, .begin = rejected.begin, .end = rejected.end});
    }
    return true;
}

bool ListeningSession::hear(const protocol::Level& level) {
    observe({.kind = ZQMListeningLevel, .level = level.decibels});
    return true;
}

bool ListeningSession::hear(const protocol::EndOfInput&) {
    if (!file_) {
        return false;
    }
    isOver_ = true;
    observe({.kind = ZQMListeningEnded});
    return true;
}

// An engine that replaces another one hears a file from its beginning.
bool ListeningSession::isNewPhrase(double end) {
    if (file_ && end <= heardUntil_) {
        return false;
    }
    heardUntil_ = end;
    losses_ = 0;
    return true;
}

// Of levels that nobody has taken the last one will do.
void ListeningSession::observe(Observation observation) {
    if (!isListening_ || !isListeningObserved()) {
        return;
    }
    if (observation.kind == ZQMListeningLevel && !events_.empty()) {
        auto* const last = std::get_if<Observation>(&events_.back());
        if (last != nullptr && last->kind == ZQMListeningLevel) {
            *last = std::move(observation);
            return;
        }
    }
    events_.emplace_back(std::move(observation));
}

bool ListeningSession::isCapturing() const {
    return state_ && state_->empty();
}

ListeningSession::Lists::iterator ListeningSession::findList(std::uint64_t number) {
    return std::ranges::find(lists_, number, [](const auto& list) { return list->number; });
}

} // namespace zqm::platform
