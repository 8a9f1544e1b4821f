#include "cli/voices/synthesizer.h"

#include "cli/voices/voice.h"

#include <zqmhost/zqmhost.h>

namespace zqm::cli {
namespace {

bool isConstructed(const host::Object& synthesizer) {
    return !synthesizer.get("voice").asText().empty();
}

} // namespace

host::Object makeSynthesizer(host::Runtime& runtime, const std::optional<std::string>& voice) {
    host::Object synthesizer = runtime.create("NSSpeechSynthesizerZQM");
    if (!voice) {
        synthesizer.call("Constructor");
        if (!isConstructed(synthesizer)) {
            throw noVoices();
        }
        return synthesizer;
    }
    synthesizer.call("Constructor", *voice);
    if (!isConstructed(synthesizer)) {
        throw noSuchVoice(*voice, installedVoices(runtime));
    }
    return synthesizer;
}

} // namespace zqm::cli
