// refused by: sources
// message: condition_hidden_in_macro.mm:3: asks for the platform: TARGET_OS_MAC
#define PLANTED TARGET_OS_MAC
#if PLANTED
#endif
