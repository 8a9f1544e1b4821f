// Speech dictionaries as programs give them.

#pragma once

#include "engine/protocol/protocol.h"

#import <Foundation/Foundation.h>

#include <optional>
#include <string>

namespace zqm::platform {

// Nothing when it is malformed; `error` then says what is wrong.
std::optional<protocol::LexiconDictionary> lexiconOf(NSDictionary* dictionary, std::string& error);

} // namespace zqm::platform
