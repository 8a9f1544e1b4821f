// What the host keeps for each recognizer object.

#pragma once

#include "plugin/instance_data.h"
#import "speech/MyNSSpeechRecognizerZQM.h"

// One retain is the host object's; nil where the platform has no recognizer.
struct RecognizerData {
    MyNSSpeechRecognizerZQM* recognizer;
};

inline MyNSSpeechRecognizerZQM*& recognizerOf(REALobject self) {
    return instanceData<RecognizerData>(self).recognizer;
}
