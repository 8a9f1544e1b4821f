// What the host keeps for each voice object.

#pragma once

#include "plugin/instance_data.h"

#import <Foundation/Foundation.h>

// One retain is the host object's; nil until the object is made for a voice.
struct VoiceData {
    NSDictionary* attributes;
};

inline NSDictionary*& attributesOf(REALobject self) {
    return instanceData<VoiceData>(self).attributes;
}
