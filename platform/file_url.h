// The file that a URL names.

#pragma once

#import <Foundation/Foundation.h>

#include <optional>
#include <string>

namespace zqm::platform {

// Its absolute path, with a slash behind where the URL has one. Nothing when it is no file URL of this
// machine.
std::optional<std::string> pathOf(NSURL* url);

} // namespace zqm::platform
