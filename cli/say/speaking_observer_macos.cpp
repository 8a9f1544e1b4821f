#include "cli/say/speaking_observer.h"

#include <array>
#include <cstdlib>
#include <string>
#include <utility>

namespace zqm::cli {
namespace {

using Kind = SpeakingEvent::Kind;

constexpr std::array kEvents{"willSpeakWord", "willSpeakPhoneme", "didEncounterSyncMessage",
                             "didEncounterErrorAtIndex"};

std::size_t count(const host::Value& value) {
    return static_cast<std::size_t>(value.asInteger());
}

} // namespace

const char* const kLosslessFile = "speech.aiff";

// The finish is the synthesizer's own event and tells no length, so it is left to that.
SpeakingObserver::SpeakingObserver(host::Object& synthesizer, Handler handler)
    : synthesizer_(synthesizer), handler_(std::move(handler)) {
    synthesizer_.on(kEvents[0], [this](const host::Arguments& event) {
        handler_({.kind = Kind::Word, .time = {}, .position = count(event[0]), .length = count(event[1])});
    });
    synthesizer_.on(kEvents[1], [this](const host::Arguments& event) {
        handler_({.kind = Kind::Phoneme, .time = {}, .opcode = static_cast<int>(event[0].asInteger())});
    });
    synthesizer_.on(kEvents[2], [this](const host::Arguments& event) {
        const std::string message = event[0].asText();
        handler_({.kind = Kind::Sync,
                  .time = {},
                  .message = static_cast<std::uint32_t>(std::strtoul(message.c_str(), nullptr, 10))});
    });
    synthesizer_.on(kEvents[3], [this](const host::Arguments& event) {
        const std::string text = event[2].asText();
        handler_({.kind = Kind::Problem, .time = {}, .position = count(event[0]), .text = text});
    });
}

SpeakingObserver::~SpeakingObserver() {
    for (const char* event : kEvents) {
        synthesizer_.off(event);
    }
}

} // namespace zqm::cli
