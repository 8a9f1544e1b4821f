// What is told about a voice.

#pragma once

#include "engine/protocol/protocol.h"

#import <Foundation/Foundation.h>

namespace zqm::platform {

// By the keys of the voice constants.
NSDictionary* attributesOf(const protocol::Voice& voice);

} // namespace zqm::platform
