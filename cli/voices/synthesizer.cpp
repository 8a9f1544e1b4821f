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
        // It may be the voice's name, or an identifier in another case.
        synthesizer.call("Constructor", findVoice(installedVoices(runtime), *voice).identifier);
        if (!isConstructed(synthesizer)) {
            throw noVoices();
        }
    }
    return synthesizer;
}

} // namespace zqm::cli
