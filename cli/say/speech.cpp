#include "cli/say/speech.h"

#include "cli/command_line/failure.h"
#include "cli/system/file_url.h"
#include "cli/system/interruption.h"
#include "cli/voices/synthesizer.h"

#include <utility>

namespace zqm::cli {
namespace {

// How long the end of a stopped speech is waited for.
constexpr host::Seconds kStopDeadline{15};

} // namespace

Speech::Speech(host::Runtime& runtime, const SayOptions& options, SpeakingObserver::Handler handler)
    : runtime_(runtime), synthesizer_(makeSynthesizer(runtime, options.voice)),
      observer_(synthesizer_, [this, handler = std::move(handler)](const SpeakingEvent& event) {
          if (event.kind == SpeakingEvent::Kind::Finished) {
              seconds_ = event.time;
          } else {
              handler(event);
          }
      }) {
    if (options.rate) {
        synthesizer_.set("Rate", *options.rate);
    }
    if (options.volume) {
        synthesizer_.set("Volume", *options.volume);
    }
    synthesizer_.on("didFinishSpeaking",
                    [this](const host::Arguments& event) { finished_ = event[0].asBool(); });
}

Speech::~Speech() {
    synthesizer_.off("didFinishSpeaking");
}

std::string Speech::language() const {
    const std::string voice = synthesizer_.get("voice").asText();
    return voice.substr(voice.rfind('/') + 1);
}

bool Speech::start(const std::string& text, const std::optional<std::string>& file) {
    finished_.reset();
    seconds_.reset();
    const host::Value answer = file ? synthesizer_.call("startSpeakingString", text, fileUrl(*file))
                                    : synthesizer_.call("startSpeakingString", text);
    return answer.asBool();
}

bool Speech::wait(const std::function<bool()>& isWanted) {
    while (!finished_ && isWanted()) {
        runtime_.runUntil([&] { return finished_ || !isWanted(); }, kSignalLatency);
    }
    if (!finished_) {
        synthesizer_.call("stopSpeaking");
        runtime_.runUntil([this] { return finished_.has_value(); }, kStopDeadline);
    }
    return finished_.value_or(false);
}

} // namespace zqm::cli
