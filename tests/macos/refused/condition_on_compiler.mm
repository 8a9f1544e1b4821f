// refused by: sources
// message: condition_on_compiler.mm:4: asks for the platform: __clang__
// message: condition_on_compiler.mm:5: asks for the platform: __has_include
#if defined(__clang__)
#elif __has_include(<AppKit/AppKit.h>)
#endif
