// URLs as objects, and their text.

#pragma once

#include "CoreFoundation/CoreFoundation.h"

#import <Foundation/Foundation.h>

#include <string>

namespace zqm::platform {

// With a reference that the caller owns; null for a text that is no URL.
CFURLRef newUrl(const std::string& text, NSURL* base);

// Of the URL alone, without its base.
std::string textOfUrl(NSURL* url);

// Resolved against its base.
std::string absoluteTextOfUrl(NSURL* url);

} // namespace zqm::platform
