// The base types of Objective-C.

#pragma once

#include <macos_declarations.h>

typedef struct objc_class* Class;
typedef struct objc_object* id;
typedef struct objc_selector* SEL;
typedef signed char BOOL;

#define YES ((BOOL)1)
#define NO ((BOOL)0)
#ifdef __cplusplus
#define nil nullptr
#define Nil nullptr
#else
#define nil ((void*)0)
#define Nil ((void*)0)
#endif
