// The sign that a program of this user speaks aloud: a lock on a file. The kernel drops it with the process
// that held it, so that nothing is left behind by one that was killed.

#pragma once

#include "engine/protocol/descriptor.h"

namespace zqm::protocol {

class SpeakingLock {
public:
    static constexpr const char* kFileName = "zqmspeech-speaking";

    // From now until release() or the end of this object; any number of objects may hold it at once. Where
    // there is no folder for it, nothing is held.
    void hold();
    void release() { file_.reset(); }

    // Whether any process of this user holds it.
    static bool isHeld();

private:
    Descriptor file_;
};

} // namespace zqm::protocol
