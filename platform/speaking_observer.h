// Whom the program wants told of what its synthesizers speak.

#pragma once

#include "platform/speech_event.h"

namespace zqm::platform {

bool isSpeakingObserved();

// There is somebody.
void tellObserver(const SpeechEvent& event);

} // namespace zqm::platform
