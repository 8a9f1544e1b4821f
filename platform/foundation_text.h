// Foundation's strings as UTF-8 and back.

#pragma once

#import <Foundation/Foundation.h>

#include <string>

namespace zqm::platform {

// nil when it is no UTF-8.
NSString* stringOf(const std::string& text);

// Lone surrogates become U+FFFD, one unit for one, so that positions stay what they are.
std::string utf8Of(NSString* string);

} // namespace zqm::platform
