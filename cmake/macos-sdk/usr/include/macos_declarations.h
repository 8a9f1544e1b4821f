// What every header of this folder starts with. These headers describe the part of macOS's interfaces that
// the plugin uses, in our own words, for building it where there is no macOS. scripts/check-macos holds them
// against an independent record of those interfaces.

#pragma once

#ifndef __APPLE__
#error "these headers describe macOS only"
#endif

#ifdef __cplusplus
#define MACOS_C_BEGIN extern "C" {
#define MACOS_C_END }
#else
#define MACOS_C_BEGIN
#define MACOS_C_END
#endif

#include <stdarg.h>
#include <stddef.h>

// The versions of macOS that have a declaration: MACOS_AVAILABLE(introduced = 10.5, deprecated = 10.8)
#define MACOS_AVAILABLE(...) __attribute__((availability(macos, __VA_ARGS__)))
