// refused by: sources
// message: condition_on_linux.mm:4: asks for the platform: linux
// message: condition_on_linux.mm:7: asks for the platform: __linux__
#if defined(linux)
#endif
#if defined(PLANTED_CONDITION_THAT_IS_LONG_ENOUGH_TO_TAKE_A_LINE) ||                                         \
    defined(__linux__) && defined(PLANTED_CONDITION_THAT_IS_LONG_TOO)
#endif
