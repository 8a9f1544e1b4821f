// The library's one exported function and what it learns about the host.

#pragma once

#include "plugin/host_interface.h"

#include <cstdint>

// Called once by the host, before anything else, with the function that answers its entry points by name.
// Announces the record revision that the host understands and registers the host classes. Touches no
// platform object: what needs one is set up on first use.
extern "C" __attribute__((visibility("default"))) void REALPluginMain(REALresolver resolver);

extern double rbversion_rbversion;              // the host's version, such as 2013.04; 0: not told
extern std::uint64_t CurrentREALControlVersion; // record revision announced to the host
extern const char* gpartname;
extern const char* gpluginname;
extern std::uint8_t gplugin; // 1 once REALPluginMain has run

// Host versions from which the host offers another way to do something.
inline constexpr double kHostVersion2012 = 2012.0;
inline constexpr double kHostVersion2013 = 2013.0;
inline constexpr double kHostVersion2016 = 2016.0;

// The revision whose event records name their token indirectly.
inline constexpr std::uint64_t kIndirectTokenRevision = 9;
