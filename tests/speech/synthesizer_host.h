// A host program with one synthesizer object, for tests that look behind it.

#pragma once

#import "speech/MyNSSpeechSynthesizer.h"
#include "tests/speech/speech_host.h"

// The platform object of a host's synthesizer; nil while it is unconstructed. Borrowed.
inline MyNSSpeechSynthesizer* platformObjectOf(const zqm::host::Object& object) {
    return instanceData<MyNSSpeechSynthesizer*>(object.handle());
}

template <typename Function>
void replaceMethod(SEL selector, Function* function) {
    replaceMethod([MyNSSpeechSynthesizer class], selector, function);
}

class SynthesizerTest : public SpeechTest {
protected:
    explicit SynthesizerTest(double hostVersion = zqm::host::kDefaultVersion,
                             Sibling sibling = Sibling::OfThisRun)
        : SpeechTest(hostVersion, sibling) {}

    zqm::host::Object newObject() { return host->create("NSSpeechSynthesizerZQM"); }
    zqm::host::Object newSynthesizer() {
        zqm::host::Object object = newObject();
        object.call("Constructor");
        EXPECT_NE(platformObjectOf(object), nil);
        return object;
    }
};

// For what happens where there is no sibling, or before one appears, whatever the run. A library stays in its
// process, so each of these tests has a process of its own.
class SynthesizerAloneTest : public SynthesizerTest {
protected:
    SynthesizerAloneTest() : SynthesizerTest(zqm::host::kDefaultVersion, Sibling::None) {}
};
