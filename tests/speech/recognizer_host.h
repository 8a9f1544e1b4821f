// A host program with one recognizer object, for tests that look behind it.

#pragma once

#import "speech/MyNSSpeechRecognizerZQM.h"
#include "speech/records.h"
#include "tests/speech/speech_host.h"

#include <ostream>

// The platform object of a host's recognizer; nil where the platform made none. Borrowed.
inline MyNSSpeechRecognizerZQM*& platformObjectOf(const zqm::host::Object& object) {
    return instanceData<MyNSSpeechRecognizerZQM*>(object.handle());
}

template <typename Function>
void replaceMethod(SEL selector, Function* function) {
    replaceMethod([MyNSSpeechRecognizerZQM class], selector, function);
}

// What the platform does when it has recognized a command.
inline void recognize(MyNSSpeechRecognizerZQM* recognizer, NSString* command) {
    [recognizer speechRecognizer:recognizer didRecognizeCommand:command];
}

class RecognizerTest : public SpeechTest {
protected:
    explicit RecognizerTest(double hostVersion = zqm::host::kDefaultVersion,
                            Sibling sibling = Sibling::OfThisRun)
        : SpeechTest(hostVersion, sibling) {}

    zqm::host::Object newRecognizer() {
        zqm::host::Object object = host->create("NSSpeechRecognizerZQM");
        EXPECT_NE(platformObjectOf(object), nil);
        return object;
    }

    // A host object as it is before its class constructor.
    zqm::host::Object newRawObject() {
        zqm::host::Object object = newRecognizer();
        NSSpeechRecognizerClass.destructor(object.handle());
        EXPECT_EQ(platformObjectOf(object), nil);
        return object;
    }

    // The class constructor once more, as a call by the host.
    void construct(const zqm::host::Object& object) {
        host->guarded([&] { NSSpeechRecognizerClass.constructor(object.handle()); });
    }
};

// For what happens where there is no sibling, or before one appears, whatever the run. A library stays in its
// process, so each of these tests has a process of its own.
class RecognizerAloneTest : public RecognizerTest {
protected:
    RecognizerAloneTest() : RecognizerTest(zqm::host::kDefaultVersion, Sibling::None) {}
};
