// refused by: linker
// message: undefined symbol: _eventfd
extern "C" int eventfd(unsigned int count, int flags);

int descriptor() {
    return eventfd(0, 0);
}
