// refused by: linker
// message: undefined symbol: _ZQMPlatformEventDescriptor
extern "C" int ZQMPlatformEventDescriptor();

int descriptor() {
    return ZQMPlatformEventDescriptor();
}
