// Speech dictionaries as programs give them.

#pragma once

#include "engine/protocol.h"

#import <Foundation/Foundation.h>

#include <optional>
#include <string>

namespace zqm::platform {

// Nothing when it is malformed; `error` then says what is wrong. The date comes out in universal time, so
// that the later one of two is the greater text.
std::optional<protocol::LexiconDictionary> lexiconOf(NSDictionary* dictionary, std::string& error);

} // namespace zqm::platform
