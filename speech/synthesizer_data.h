// What the host keeps for each synthesizer object.

#pragma once

#include "plugin/instance_data.h"
#import "speech/MyNSSpeechSynthesizer.h"

// One retain is the host object's; nil until it is constructed.
struct SynthesizerData {
    MyNSSpeechSynthesizer* synthesizer;
};

inline MyNSSpeechSynthesizer*& synthesizerOf(REALobject self) {
    return instanceData<SynthesizerData>(self).synthesizer;
}
